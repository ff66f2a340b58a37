import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { closeBrowser, command, serve, visit, workFolder } from "./serve.mjs";

const work = workFolder();
const report = work.copy("report.pdf");
const first = readFileSync(report);
for (const [from, to] of [["A busy summer", "A better summer"], ["#12335c", "#7a1f3d"]]) {
  const art = work.path(`${to.replace(/\W/g, "")}.svg`);
  command("open", report, "-o", art, "--images", "embed");
  writeFileSync(art, readFileSync(art, "utf8").replaceAll(from, to));
  assert.equal(command("save", art, report).error, null);
}
const server = await serve(report);
const { page, faults } = await visit(server.address);
const dialog = page.getByRole("dialog", { name: "History of report.pdf" });

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

// The share of pixels of a picture that have a colour.
const share = (name, colour) => dialog.getByAltText(name).evaluate(async (image, [red, green, blue]) => {
  await image.decode();
  const canvas = Object.assign(document.createElement("canvas"), { width: 200, height: 283 });
  const brush = canvas.getContext("2d");
  brush.drawImage(image, 0, 0, 200, 283);
  const data = brush.getImageData(0, 0, 200, 283).data;
  let count = 0;
  for (let at = 0; at < data.length; at += 4) {
    count += Math.abs(data[at] - red) + Math.abs(data[at + 1] - green) + Math.abs(data[at + 2] - blue) < 12 ? 1 : 0;
  }
  return count / (200 * 283);
}, colour);

const blue = [0x12, 0x33, 0x5c];
const red = [0x7a, 0x1f, 0x3d];

test("the newest update is shown before and after", async () => {
  await page.locator(".save-state[data-state=unchanged]").waitFor();
  await page.getByRole("button", { name: "History" }).click();
  await dialog.getByText("Update 2").waitFor();
  assert.deepEqual(await dialog.locator(".update-title").allTextContents(), ["Update 2", "Update 1", "The file as first written"]);
  const updates = command("log", report).updates;
  assert.match(await dialog.locator(".update-row").first().textContent(),
    new RegExp(`page 1 · ${updates[2].size.toLocaleString("en-GB")} bytes`));
  await page.waitForFunction(() => document.querySelector(".after img")?.naturalWidth > 0);
  assert.ok(await share("The page before", blue) > 0.03);
  assert.ok(await share("The page before", red) < 0.001);
  assert.ok(await share("The page after", red) > 0.03);
});

test("both pictures stand over each other, side by side, or one at a time", async () => {
  const place = (name) => dialog.getByAltText(name).boundingBox();
  assert.deepEqual(await place("The page before"), await place("The page after"));
  await dialog.getByRole("slider").fill("20");
  assert.match(await dialog.locator(".stage").getAttribute("style"), /--split: 20%/);
  await dialog.getByRole("button", { name: "Side by side" }).click();
  const [before, afterwards] = [await place("The page before"), await place("The page after")];
  assert.ok(before.x + before.width <= afterwards.x);
  await dialog.getByRole("button", { name: "One at a time" }).click();
  assert.equal(await dialog.getByAltText("The page before").isVisible(), false);
  await dialog.getByRole("button", { name: "Show the page before" }).click();
  assert.equal(await dialog.getByAltText("The page before").isVisible(), true);
});

test("only the newest update can be taken off", async () => {
  await dialog.getByText("Update 1").click();
  assert.equal(await dialog.getByRole("button", { name: "Take off" }).count(), 0);
  await dialog.getByText("The file as first written").click();
  await page.waitForFunction(() => document.querySelector(".comparison").classList.contains("single"));
  assert.equal(await dialog.getByRole("button", { name: "Take off" }).count(), 0);
});

test("what was appended meanwhile is not taken off in the place of what was asked about", async () => {
  const art = work.path("meanwhile.svg");
  command("open", report, "-o", art, "--images", "embed");
  writeFileSync(art, readFileSync(art, "utf8").replace("A better summer", "A long summer"));
  await dialog.getByText("Update 2").click();
  await dialog.getByRole("button", { name: "Take off" }).click();
  assert.equal(command("save", art, report).error, null);
  const length = readFileSync(report).length;
  await page.getByRole("dialog", { name: "Take off update 2?" }).getByRole("button", { name: "Take off" }).click();
  await dialog.getByText("The file was changed meanwhile").waitFor();
  assert.equal(readFileSync(report).length, length);
  await dialog.getByText("Update 3").waitFor();
  assert.equal(command("revert", report).error, null);
  await page.keyboard.press("Escape");
  await page.getByRole("button", { name: "History" }).click();
});

test("taking off asks first, and then the file is what it was, to the byte", async () => {
  const length = command("log", report).updates[2].offset;
  await dialog.getByText("Update 2").click();
  await dialog.getByRole("button", { name: "Take off" }).click();
  const question = page.getByRole("dialog", { name: "Take off update 2?" });
  await question.getByRole("button", { name: "Cancel" }).click();
  assert.ok(readFileSync(report).length > length);
  await dialog.getByRole("button", { name: "Take off" }).click();
  await question.getByRole("button", { name: "Take off" }).click();
  await page.getByText("Taken off: page 1").waitFor();
  assert.equal(readFileSync(report).length, length);
  await page.getByRole("button", { name: "History" }).click();
  await dialog.getByRole("button", { name: "Take off" }).click();
  await page.getByRole("dialog", { name: "Take off update 1?" }).getByRole("button", { name: "Take off" }).click();
  await dialog.waitFor({ state: "detached" });
  await page.locator(".save-state[data-state=unchanged]").waitFor();
  assert.deepEqual(readFileSync(report), first);
  assert.deepEqual(faults, []);
});
