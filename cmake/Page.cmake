# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Writes OUTPUT, a page for a browser: the HTML in HEAD, followed by the Markdown in SOURCE, which CMARK
# converts to HTML.

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${CMARK}" --extension table "${SOURCE}"
    OUTPUT_VARIABLE body COMMAND_ERROR_IS_FATAL ANY)
file(READ "${HEAD}" head)
file(WRITE "${OUTPUT}" "${head}${body}</main>\n</html>\n")
