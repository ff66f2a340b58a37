// Every view for people who do not see it as it is meant: axe-core's rules, both colour schemes, a small
// window, and keys alone.

import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { after, test } from "node:test";
import { encryptedPdf } from "./encrypted.mjs";
import { closeBrowser, command, moveFirst, serve, state, visit, workFolder } from "./serve.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const work = workFolder();
const report = work.copy("report.pdf");
work.copy("two-pages.pdf");
writeFileSync(work.path("secret.pdf"), encryptedPdf("Hello", "user", "owner"), "latin1");
writeFileSync(work.path("bad.pdf"), "%PDF-1.7\n");
const art = work.path("art.svg");
command("open", report, "-o", art, "--images", "embed");
writeFileSync(art, readFileSync(art, "utf8").replace("A busy summer", "A better summer"));
command("save", art, report);
const server = await serve(work.folder);

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

// What axe finds on the view, but minor matters; and what is wider than the window.
async function faultsOf(page) {
  // In the world of the test, which the page's policy does not concern.
  const found = await page.evaluate(`(() => { ${axe}; return axe.run(document, { resultTypes: ["violations"] }); })()`);
  const faults = found.violations.filter(({ impact }) => impact !== "minor")
    .map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html.slice(0, 120)).join(" | ")}`);
  const wide = await page.evaluate(() => [...document.querySelectorAll("body, header, .desk, .right, .panel, dialog, .dialog-body, .toolbar")]
    .filter((element) => element.scrollWidth > element.clientWidth + 1).map((element) => `too wide: ${element.className || element.tagName}`));
  return [...faults, ...wide];
}

const views = [
  ["files", async () => undefined],
  ["a page", async (page) => {
    await page.getByRole("button", { name: /report/ }).click();
    await state(page, "unchanged");
    await page.locator(".page-picture canvas").first().waitFor();
  }],
  ["something selected", (page) => moveFirst(page)],
  ["the save", async (page) => {
    await page.keyboard.press("Control+s");
    await page.getByText("This appends").waitFor();
  }, true],
  ["leaving", async (page) => {
    await page.getByRole("button", { name: "Files" }).click();
    await page.getByRole("dialog", { name: "Page 1 is not saved" }).waitFor();
  }, true],
  ["history", async (page) => {
    await page.getByRole("button", { name: "History" }).click();
    await page.waitForFunction(() => document.querySelector(".after img")?.naturalWidth > 0);
  }, true],
  ["help", async (page) => {
    await page.keyboard.press("F1");
    await page.getByRole("dialog", { name: "Keys" }).waitFor();
  }, true],
  ["a refused file", async (page) => {
    await page.getByRole("button", { name: "Files" }).click();
    await page.getByRole("button", { name: "Throw it away" }).click();
    await page.getByRole("button", { name: /bad/ }).click();
    await page.locator(".notice").waitFor();
  }],
  ["a password", async (page) => {
    await page.getByRole("button", { name: "Files" }).click();
    await page.getByRole("button", { name: /secret/ }).click();
    await page.getByRole("dialog").waitFor();
  }, true],
];

for (const [scheme, width, height] of [["light", 1280, 800], ["dark", 1280, 800], ["light", 1024, 640]]) {
  test(`axe finds nothing serious on any view: ${scheme}, ${width} pixels wide`, async () => {
    const { page, faults, close } = await visit(server.address, { scheme, width, height });
    await page.locator(".file-row").first().waitFor();
    for (const [name, open, isDialog = false] of views) {
      await open(page);
      assert.deepEqual(await faultsOf(page), [], name);
      if (isDialog) {
        await page.keyboard.press("Escape");
        await page.locator("dialog").waitFor({ state: "detached" });
      }
    }
    assert.deepEqual(faults, []);
    await close();
  });
}

test("the scheme can be switched against that of the system, and stays", async () => {
  const { page, close } = await visit(server.address, { scheme: "light" });
  const ground = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  const light = await ground();
  await page.getByRole("button", { name: "Dark or light" }).click();
  const dark = await ground();
  assert.notEqual(dark, light);
  await page.reload();
  assert.equal(await ground(), dark);
  await close();
});

test("a page is opened, changed, saved and taken off again by keys alone", async () => {
  const { page, close } = await visit(server.address);
  await page.locator(".file-row").first().waitFor();
  const length = readFileSync(report).length;
  await page.keyboard.type("report");
  await page.keyboard.press("Enter");
  await state(page, "unchanged");
  await tabTo(page, () => document.activeElement?.closest(".canvas") !== null);
  await page.keyboard.press("Tab");
  await page.keyboard.press("ArrowRight");
  await state(page, "changed");
  await page.keyboard.press("Control+s");
  await page.getByText("This appends").waitFor();
  await page.keyboard.press("Enter");
  await state(page, "saved");
  assert.ok(readFileSync(report).length > length);
  await page.getByText("and compared it").waitFor();
  await page.keyboard.press("Escape");
  await tabTo(page, () => document.activeElement?.textContent === "History", "Shift+Tab");
  await page.keyboard.press("Enter");
  await page.getByRole("button", { name: "Take off" }).waitFor();
  await tabTo(page, () => document.activeElement?.textContent === "Take off ...");
  await page.keyboard.press("Enter");
  await page.getByRole("dialog", { name: /Take off update/ }).waitFor();
  await tabTo(page, () => document.activeElement?.textContent === "Take off");
  await page.keyboard.press("Enter");
  await page.getByText("Taken off: page 1").waitFor();
  assert.equal(readFileSync(report).length, length);
  await close();
});

async function tabTo(page, isThere, key = "Tab") {
  for (let step = 0; step < 60; step++) {
    if (await page.evaluate(isThere)) {
      return;
    }
    await page.keyboard.press(key);
  }
  assert.fail("no number of steps led there");
}
