// Prints the rows of a table as lines of JSON: one array of texts (or null) a row.
//   node rows.mjs FILE TABLE
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { pathToFileURL } from "node:url";

// The reader stands where it was fetched to, not beside this file.
const require = createRequire(pathToFileURL(process.cwd() + "/"));
const { default: MDBReader } = await import(
  pathToFileURL(require.resolve("mdb-reader/package.json").replace("package.json", "lib/node/index.js"))
);

const reader = new MDBReader(readFileSync(process.argv[2]));
const table = reader.getTable(process.argv[3]);
const columns = table.getColumnNames();

function textOf(value) {
  if (value === null || value === undefined) return null;
  if (value instanceof Date) return value.toISOString().slice(0, 19).replace("T", " ");
  if (Buffer.isBuffer(value)) return value.toString("hex");
  if (typeof value === "boolean") return value ? "1" : "0";
  return String(value);
}

for (const row of table.getData()) {
  console.log(JSON.stringify(columns.map((column) => textOf(row[column]))));
}
