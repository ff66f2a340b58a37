import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { encryptedPdf } from "./encrypted.mjs";
import { closeBrowser, serve, visit, workFolder } from "./serve.mjs";

const work = workFolder();
work.copy("report.pdf");
work.copy("map.pdf");
work.copy("two-pages.pdf");
writeFileSync(work.path("secret.pdf"), encryptedPdf("Hello", "küche & \"co\"", "owner"), "latin1");
writeFileSync(work.path("hostile <b>.pdf"), "%PDF-1.7\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\ntrailer << /Root 9 0 R >>\n");
const server = await serve(work.folder);
const { page, faults } = await visit(server.address);

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

const shown = (page) => page.locator(".save-state[data-state=unchanged]").waitFor();

test("the files of a folder are found by typing and opened by keys", async () => {
  await page.locator(".file-row").first().waitFor();
  assert.deepEqual(await page.locator(".file-row-name").allTextContents(),
    ["hostile <b>.pdf", "map.pdf", "report.pdf", "secret.pdf", "two-pages.pdf"]);
  await page.keyboard.type("RT rep");
  assert.deepEqual(await page.locator(".file-row-name").allTextContents(), ["report.pdf"]);
  assert.match(await page.locator(".file-row-size").textContent(), /28\.9 kB/);
  await page.keyboard.press("Enter");
  await shown(page);
  assert.equal(await page.title(), "report.pdf - Corvane");
});

test("an address opens its file and page, in a tab of its own as well", async () => {
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByLabel("Find").fill("two");
  await page.getByLabel("Find").press("ArrowDown");
  await page.keyboard.press("Enter");
  await shown(page);
  await page.getByRole("button", { name: "Next page" }).click();
  await page.waitForURL(/#\d+\/2$/);
  const beside = await page.context().newPage();
  await beside.goto(page.url());
  await shown(beside);
  assert.equal(await beside.getByRole("textbox", { name: "Page" }).inputValue(), "2");
  await beside.close();
});

test("a page number that is not there leaves the page as it is", async () => {
  const field = page.getByRole("textbox", { name: "Page" });
  for (const [typed, kept] of [["3", "2"], ["0", "2"], ["x", "2"], ["1.5", "2"], ["1", "1"]]) {
    await field.fill(typed);
    await field.press("Enter");
    await page.waitForFunction((wanted) => document.querySelector(".page-number").value === wanted, kept);
  }
});

test("a password is asked for until it is right, and is kept for the tab", async () => {
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("button", { name: /secret/ }).click();
  const dialog = page.getByRole("dialog");
  await dialog.getByText("needs a password").waitFor();
  await page.getByRole("textbox", { name: "Password" }).fill("wrong");
  await page.keyboard.press("Enter");
  await dialog.getByText("not a password").waitFor();
  await page.getByRole("textbox", { name: "Password" }).fill("küche & \"co\"");
  await page.keyboard.press("Enter");
  await shown(page);
  await page.locator(".page-picture canvas").first().waitFor();
  await page.getByRole("button", { name: "History" }).click();
  await page.getByText("The file as first written").waitFor();
  await page.keyboard.press("Escape");
});

test("a file that nobody can read is an error in words, and the others still open", async () => {
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("button", { name: /hostile/ }).click();
  await page.locator(".notice.danger").getByText(/hostile <b>\.pdf cannot be opened/).waitFor();
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("button", { name: /map/ }).click();
  await shown(page);
  assert.equal(await page.locator(".notice").count(), 0);
});

test("names of strangers do not turn the text, and files that are not listed are counted", async () => {
  await page.route(/\/api\/files$/, async (route) => {
    const list = await (await route.fetch()).json();
    list.files.push({ ...list.files[0], id: "99", name: "bill\u202Efdp.\u0007exe" });
    await route.fulfill({ json: { ...list, leftOut: 1234 } });
  });
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByText("bill\\u202efdp.\\u0007exe", { exact: true }).waitFor();
  await page.getByText("6 files. The folder has 1,234 more files").waitFor();
  await page.unroute(/\/api\/files$/);
});

test("no script failed and nothing was refused on the way", () => {
  assert.deepEqual(faults, []);
});
