// Makes the page: app.js, app.css and index.html in the folder that is named.
//   node build.mjs FOLDER
import { build } from "esbuild";
import { copyFile, mkdir } from "node:fs/promises";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));
const folder = process.argv[2];
if (folder === undefined) {
  console.error("node build.mjs FOLDER: which folder?");
  process.exit(2);
}
const out = resolve(folder);
await mkdir(out, { recursive: true });
await build({
  absWorkingDir: here,
  entryPoints: { app: "src/main.ts" },
  outdir: out,
  bundle: true,
  format: "esm",
  target: ["chrome110", "firefox115", "safari16.4"],
  charset: "utf8",
  minify: !process.argv.includes("--readable"),
  legalComments: "inline",
  logLevel: "warning",
});
await copyFile(join(here, "index.html"), join(out, "index.html"));
