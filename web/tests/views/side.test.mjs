import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { firstMore, page as pdfPage, pdf, words } from "./pdf.mjs";
import { closeBrowser, command, serve, state, visit, workFolder } from "./serve.mjs";

const work = workFolder();
const map = work.copy("map.pdf");
writeFileSync(work.path("odd.pdf"), pdf([pdfPage(`${words("Odd")} 1 2 nonsense 0 0 300 20 re f /Tag BMC EMC`,
  { extra: `/Annots [${firstMore(1)} 0 R]` })],
{ more: ["<< /Type /Annot /Subtype /Square /Rect [100 150 200 250] /C [1 0 0] /IC [1 0 0] >>"] }), "latin1");
const nasty = "<img src=x onerror=document.title=1><script>document.title=2</script>";
writeFileSync(work.path(`${nasty.replaceAll("/", "")}.pdf`), pdf([pdfPage(`/OC /L BDC ${words(nasty)} EMC`,
  { extra: "/AA << /O << /S /JavaScript /JS (document.title=3) >> >>", resources: `/Properties << /L ${firstMore(1)} 0 R >>` })], {
  catalog: `/OCProperties << /OCGs [${firstMore(1)} 0 R] /D << >> >> /OpenAction << /S /JavaScript /JS (document.title=4) >>`,
  more: [`<< /Type /OCG /Name (${nasty}) >>`],
}), "latin1");
const server = await serve(work.folder);
const { page, faults } = await visit(server.address);
const layer = (name) => page.locator(".layer", { hasText: name });

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

test("layers are listed with the front one first, hidden and locked, and saved so", async () => {
  await page.getByRole("button", { name: /map/ }).click();
  await state(page, "unchanged");
  const names = await page.locator(".layer-name").allTextContents();
  assert.deepEqual([names[0], names.includes("Railway"), names.includes("Houses")], ["Legend", true, true]);
  const show = page.getByRole("button", { name: "Show layer Railway" });
  const lock = page.getByRole("button", { name: "Lock layer Water" });
  assert.equal(await show.getAttribute("aria-pressed"), "true");
  await show.press("Enter");
  await page.locator("[aria-label='Show layer Railway'][aria-pressed=false]").waitFor();
  assert.equal(await show.evaluate((button) => button === document.activeElement), true);
  await lock.click();
  await state(page, "changed");
  await page.keyboard.press("Control+s");
  await page.getByText("This appends").waitFor();
  await page.getByRole("dialog").getByRole("button", { name: "Save", exact: true }).click();
  await page.getByText("and compared it").waitFor();
  assert.equal(await show.getAttribute("aria-pressed"), "false");
  assert.equal(await lock.getAttribute("aria-pressed"), "true");
  const art = work.path("art.svg");
  command("open", map, "-o", art, "--images", "embed");
  assert.match(readFileSync(art, "utf8"), /data-layer-name="Railway" data-layer-state="hidden"/);
  assert.equal(await layer("Railway").count(), 1);
});

test("what opening said is listed: warnings, and what the artwork does not hold", async () => {
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("button", { name: /odd/ }).click();
  await state(page, "unchanged");
  const notes = await page.locator(".notes").innerText();
  assert.match(notes, /Drawing commands that no PDF version knows are not in the artwork\./);
  assert.match(notes, /1 unknown drawing command: kept in the file, cannot be edited here\./);
  assert.match(notes, /1 tag: kept in the file/);
  assert.equal(await page.locator(".notes-section .badge").textContent(), "3");
});

test("what a file says is text everywhere, never part of the page", async () => {
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("button", { name: /onerror/ }).click();
  await state(page, "unchanged");
  assert.equal(await page.locator(".file-name").textContent(), `${nasty.replaceAll("/", "")}.pdf`);
  assert.equal(await page.locator(".layer-name").first().textContent(), nasty);
  assert.equal(await page.locator(".canvas text").first().textContent(), nasty);
  await page.getByRole("button", { name: "History" }).click();
  await page.waitForFunction(() => document.querySelector(".after img")?.naturalWidth > 0);
  await page.keyboard.press("Escape");
  assert.match(await page.title(), /^<img .* - Corvane$/);
  assert.equal(await page.locator("img[src=x], .desk script, .header script").count(), 0);
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("button", { name: /odd/ }).click();
  await state(page, "unchanged");
});

test("what is shown and cannot be edited says why, once it is selected", async () => {
  assert.equal(await page.getByRole("button", { name: "Lock layer Annotations" }).isDisabled(), true);
  const shape = await page.locator(".canvas #annotations path").first().boundingBox();
  await page.mouse.click(shape.x + shape.width / 2, shape.y + shape.height / 2);
  await page.locator(".limits p").first().waitFor();
  assert.match(await page.locator(".limits").innerText(), /annotation/i);
  await page.keyboard.press("Escape");
  await page.locator(".limits:empty").waitFor({ state: "attached" });
  assert.deepEqual(faults, []);
});
