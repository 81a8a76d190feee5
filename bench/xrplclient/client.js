// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The smallest possible client with the data of the ledger window: subscribes to the same streams and
// counts transactions by type.

import { Client } from 'xrpl'

const client = new Client('ws://127.0.0.1:16006')
const ledgers = []
const types = new Map()

client.on('ledgerClosed', (ledger) => {
    ledgers.push({ index: ledger.ledger_index, transactions: ledger.txn_count })
    if (ledgers.length > 60) ledgers.shift()
})

client.on('transaction', (message) => {
    const type = (message.tx_json ?? message.transaction)?.TransactionType ?? 'Unknown'
    types.set(type, (types.get(type) ?? 0) + 1)
})

await client.connect()
await client.request({ command: 'subscribe', streams: ['ledger', 'transactions'] })
console.log('subscribed')

process.on('SIGTERM', () => {
    console.log(JSON.stringify(Object.fromEntries(types)))
    process.exit(0)
})
