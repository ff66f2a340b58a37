// A page of the real browser with the parts under test in it, and the policy that the server sends.
import { build } from "esbuild";
import { createServer } from "node:http";
import { fileURLToPath } from "node:url";
import { chromium } from "playwright-core";

const policy = "default-src 'none'; script-src 'self'; style-src 'self' 'unsafe-inline'; img-src 'self' data: blob:; " +
  "font-src data:; connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

async function bundle() {
  const made = await build({
    entryPoints: [fileURLToPath(new URL("parts.ts", import.meta.url))],
    outdir: "/", bundle: true, format: "esm", write: false, logLevel: "warning", charset: "utf8",
  });
  return Object.fromEntries([["/app.css", ""]].concat(made.outputFiles.map(file => [file.path.endsWith(".css") ? "/app.css" : "/app.js", file.text])));
}

const frame = `<!doctype html><html lang="en"><head><meta charset="utf-8"><title>Parts</title>
<link rel="icon" href="data:,"><link rel="stylesheet" href="/app.css"><style>input:not([type="color"], [type="range"]) { box-sizing: border-box; padding: 3px 8px; }</style></head><body>
<div id="toolbar"></div><main id="canvas" style="position:relative;width:900px;height:700px"></main><aside id="panel"></aside>
<script type="module" src="/app.js"></script></body></html>`;

// Has page, requests (addresses that were asked for from elsewhere), faults, and close().
export async function openParts(viewport = { width: 1280, height: 800 }) {
  const files = await bundle();
  const server = createServer((request, response) => {
    const body = request.url === "/" ? frame : files[request.url];
    const type = request.url === "/" ? "text/html" : request.url?.endsWith(".css") ? "text/css" : "text/javascript";
    response.writeHead(body === undefined ? 404 : 200, { "content-type": type, "content-security-policy": policy });
    response.end(body ?? "");
  });
  await new Promise(resolve => server.listen(0, "127.0.0.1", resolve));
  const home = `http://127.0.0.1:${server.address().port}/`;
  const browser = await chromium.launch({
    executablePath: process.env.CORVANE_CHROMIUM ?? "/usr/bin/chromium", args: ["--no-sandbox"],
  });
  const page = await browser.newPage({ viewport });
  const requests = [];
  const faults = [];
  page.on("request", request => { if (!request.url().startsWith(home) && !request.url().startsWith("data:")) requests.push(request.url()); });
  page.on("pageerror", fault => faults.push(String(fault)));
  page.on("console", line => { if (line.type() === "error" && !/inline event handler/.test(line.text())) faults.push(line.text()); });
  await page.goto(home);
  await page.waitForFunction(() => "parts" in globalThis);
  return { page, requests, faults, close: async () => { await browser.close(); server.close(); } };
}
