// Modules of the page that need no browser, for tests in node.

import { build } from "esbuild";
import { fileURLToPath } from "node:url";

export async function load(path) {
  const made = await build({
    entryPoints: [fileURLToPath(new URL(`../../src/${path}`, import.meta.url))],
    bundle: true, format: "esm", write: false, logLevel: "warning",
  });
  return await import(`data:text/javascript;base64,${Buffer.from(made.outputFiles[0].contents).toString("base64")}`);
}
