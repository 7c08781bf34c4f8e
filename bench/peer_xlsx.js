#!/usr/bin/env node
// The benchmark's rows as DIF, SYLK or RTF through the npm package xlsx.
//
//   peer_xlsx.js ROWS.json OUT dif|sylk|rtf
//
// ROWS.json is one array of arrays, the captions first: there is nothing that node reads faster,
// and no database to be asked. The sheet is a dense one, the fastest kind that the library has.
'use strict';
const fs = require('fs');
const xlsx = require('../build/bench/npm/node_modules/xlsx');

const [input, output, bookType] = process.argv.slice(2);
const rows = JSON.parse(fs.readFileSync(input, 'utf8'));
const book = xlsx.utils.book_new();
xlsx.utils.book_append_sheet(book, xlsx.utils.aoa_to_sheet(rows, {dense: true}), 'bench');
xlsx.writeFile(book, output, {bookType});
