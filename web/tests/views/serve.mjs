// The real server on files of a test, and the page in a real browser.

import { execFileSync, spawn } from "node:child_process";
import { copyFileSync, mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { basename, join } from "node:path";
import { fileURLToPath } from "node:url";
import { chromium } from "playwright-core";

const top = fileURLToPath(new URL("../../..", import.meta.url));
export const corvane = process.env.CORVANE_PROGRAM ?? join(top, "build/corvane");

export function example(name) {
  return join(process.env.CORVANE_EXAMPLES ?? join(top, "examples"), name);
}

// What a command of the program says, as `--json` has it; its exit status does not count.
export function command(...words) {
  try {
    return JSON.parse(execFileSync(corvane, [...words, "--json"], { stdio: ["ignore", "pipe", "ignore"] }));
  } catch (error) {
    return JSON.parse(error.stdout);
  }
}

// A folder that a test may fill; `copy` puts an example there, `path` names a file in it.
export function workFolder() {
  const folder = mkdtempSync(join(tmpdir(), "corvane-page-"));
  return {
    folder,
    path: (name) => join(folder, name),
    copy(name, as = basename(name)) {
      copyFileSync(example(name), join(folder, as));
      return join(folder, as);
    },
    remove: () => rmSync(folder, { recursive: true, force: true }),
  };
}

// The date of all updates that tests make, so that the same save gives the same bytes.
process.env.SOURCE_DATE_EPOCH = "1790000000";

// Words that begin with "--" are options.
export async function serve(...files) {
  const child = spawn(corvane, ["serve", ...files, "--no-browser", "--stay", "--json"], { stdio: ["ignore", "pipe", "inherit"] });
  const ended = new Promise((resolve) => child.once("exit", resolve));
  let text = "";
  const address = await new Promise((resolve, reject) => {
    child.stdout.on("data", (data) => {
      text += data;
      if (text.includes("\n")) {
        resolve(JSON.parse(text).address);
      }
    });
    child.once("exit", (status) => reject(new Error(`the server ended with ${status}: ${text}`)));
  });
  return {
    address,
    async stop(signal = "SIGTERM") {
      child.kill(signal);
      await ended;
    },
  };
}

let browser = null;

// A page of a browser; faults of scripts and refused resources are gathered in `faults`.
export async function visit(address, { width = 1280, height = 800, scheme = "light" } = {}) {
  browser ??= await chromium.launch({
    executablePath: process.env.CORVANE_CHROMIUM ?? "/usr/bin/chromium", args: ["--no-sandbox"],
  });
  const context = await browser.newContext({ viewport: { width, height }, colorScheme: scheme, acceptDownloads: true });
  const page = await context.newPage();
  const faults = [];
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("console", (line) => {
    // The browser itself notes each answer that is no success.
    if (line.type() === "error" && !line.text().startsWith("Failed to load resource")) {
      faults.push(line.text());
    }
  });
  await page.goto(address);
  return { page, context, faults, close: () => context.close() };
}

// Waits until the page that is open stands so: "unchanged", "changed", "saved".
export function state(page, wanted) {
  return page.locator(`.save-state[data-state=${wanted}]`).waitFor();
}

// Moves the first object of the page by keys.
export async function moveFirst(page) {
  await page.locator(".canvas [tabindex='0']").first().focus();
  await page.keyboard.press("Tab");
  await page.keyboard.press("ArrowRight");
  await state(page, "changed");
}

// The drawing as the person can take it away.
export async function downloaded(page, button = page.getByRole("button", { name: "Download the artwork as SVG" })) {
  const arriving = page.waitForEvent("download");
  await button.click();
  return await (await arriving).path();
}

export async function closeBrowser() {
  await browser?.close();
  browser = null;
}
