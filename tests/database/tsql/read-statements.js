// Reads the statements that SQL Server gets with a parser of its dialect that is not ours. Each one
// must be read, save those that a translation is known to break: these must be refused.
//
// node read-statements.js STATEMENTS.json FOLDER_OF_NODE_MODULES
'use strict';
const {readFileSync} = require('node:fs');
const {createRequire} = require('node:module');

const [statements, modules] = process.argv.slice(2);
const {Parser} = createRequire(`${modules}/`)('node-sql-parser/build/transactsql');
const parser = new Parser();

/** Why the parser refuses `statement`; empty when it reads it. */
function refusal(statement) {
  try {
    parser.astify(statement, {database: 'transactsql'});
    return '';
  } catch (error) {
    return error.message || 'refused';
  }
}

const rows = JSON.parse(readFileSync(statements, 'utf8'));
let read = 0;
let faults = 0;
for (const {what, sqlserver, not_tsql: broken} of rows) {
  const reason = refusal(sqlserver);
  if (reason === '') read += 1;
  if ((reason === '') === (broken === undefined)) continue;
  faults += 1;
  console.error(`${what}: ${sqlserver}\n  ${reason || `read, although it holds ${broken}`}`);
}
console.log(`${rows.length} statements, ${read} read, ${faults} not as expected`);
process.exit(faults === 0 && read > 50 ? 0 : 1);
