import assert from "node:assert/strict";
import { copyFileSync, readFileSync } from "node:fs";
import { after, test } from "node:test";
import { closeBrowser, command, downloaded, moveFirst, serve, state, visit, workFolder } from "./serve.mjs";

const work = workFolder();
const report = work.copy("report.pdf");
const pages = work.copy("two-pages.pdf");
const server = await serve(report, pages);
const { page, faults } = await visit(server.address);
const dialog = page.getByRole("dialog");

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

async function openFile(name) {
  await page.getByRole("button", { name: new RegExp(name) }).click();
  await state(page, "unchanged");
}

test("a page that was not changed has nothing to save", async () => {
  await openFile("report.pdf");
  const before = readFileSync(report);
  await page.keyboard.press("Control+s");
  await page.getByRole("dialog", { name: "Nothing to save" }).waitFor();
  await page.keyboard.press("Escape");
  assert.deepEqual(readFileSync(report), before);
});

test("a save shows first what it appends, and then appends what the command line would", async () => {
  await moveFirst(page);
  const copy = work.path("copy.pdf");
  copyFileSync(report, copy);
  const art = await downloaded(page);
  await page.keyboard.press("Control+s");
  await dialog.getByText("This appends").waitFor();
  const counts = await dialog.locator(".counts > div").allTextContents();
  assert.equal(readFileSync(report).length, readFileSync(copy).length);
  const wanted = command("save", art, copy, "--page", "1");
  assert.equal(wanted.error, null);
  assert.deepEqual(counts, ["kept", "changed", "added", "removed", "moved"].map((name) => `${name}${wanted[name]}`));
  await dialog.getByText(`appends ${(wanted.length - wanted.formerLength).toLocaleString("en-GB")} bytes`).waitFor();
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  await page.getByText("Saved page 1 and compared it").waitFor();
  assert.deepEqual(readFileSync(report), readFileSync(copy));
  assert.equal(await page.locator(".notice").count(), 0);
});

test("zoom and place stay over a save", async () => {
  const view = () => page.locator(".artwork-paper").evaluate((paper) => {
    const { x, y, width } = paper.getBoundingClientRect();
    return [x, y, width].map(Math.round);
  });
  const whole = await view();
  await page.locator(".canvas [tabindex='0']").first().focus();
  for (const key of ["+", "+", "Control+ArrowDown", "Control+ArrowRight"]) {
    await page.keyboard.press(key);
  }
  await page.waitForTimeout(300);
  await moveFirst(page);
  const before = await view();
  assert.ok(before[2] > whole[2]);
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await page.getByText("Saved page 1 and compared it").waitFor();
  assert.deepEqual(await view(), before);
  await page.keyboard.press("0");
});

test("after a save the page is that of the file: nothing is left to save, and undo begins anew", async () => {
  assert.equal(await page.locator(".header").getByRole("button", { name: "Undo" }).isDisabled(), true);
  await page.keyboard.press("Control+s");
  await page.getByRole("dialog", { name: "Nothing to save" }).waitFor();
  await page.keyboard.press("Escape");
});

test("nothing is called saved before the server has answered", async () => {
  let answer = () => undefined;
  const held = new Promise((resolve) => {
    answer = resolve;
  });
  await page.route(/\/save(\?|$)/, async (route) => {
    await held;
    await route.continue();
  });
  await moveFirst(page);
  const length = readFileSync(report).length;
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await dialog.getByText("Saving ...").waitFor();
  await page.waitForTimeout(200);
  assert.doesNotMatch(await page.locator(".save-state").textContent(), /Saved/);
  assert.doesNotMatch(await page.locator(".status").textContent(), /Saved/);
  await page.keyboard.press("Escape");
  assert.equal(readFileSync(report).length, length);
  answer();
  await state(page, "saved");
  assert.ok(readFileSync(report).length > length);
  await page.unroute(/\/save(\?|$)/);
  await page.getByText("and compared it").waitFor();
});

test("a save that follows at once waits for the page as it was saved, and appends nothing", async () => {
  let open = () => undefined;
  const held = new Promise((resolve) => {
    open = resolve;
  });
  await page.route(/\/open$/, async (route) => {
    await held;
    await route.continue();
  }, { times: 1 });
  const asked = [];
  const note = (request) => asked.push(new URL(request.url()).pathname);
  await moveFirst(page);
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  const length = readFileSync(report).length;
  page.on("request", note);
  await page.keyboard.press("Control+s");
  await page.keyboard.press("Control+s");
  await page.waitForTimeout(300);
  assert.deepEqual(asked.filter((path) => /trial|save/.test(path)), []);
  open();
  await page.getByRole("dialog", { name: "Nothing to save" }).waitFor();
  await page.keyboard.press("Escape");
  page.off("request", note);
  assert.equal(readFileSync(report).length, length);
});

test("a page whose drawing differs after the save is said to", async () => {
  await page.route(/\/artworks\//, async (route) => {
    const answer = await route.fetch();
    await route.fulfill({ response: answer, body: (await answer.text()).replace("#1a808c", "#ff0000") });
  }, { times: 1 });
  await moveFirst(page);
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await page.locator(".notice.warn").getByText("Page 1 was saved, but").waitFor();
});

test("letters that are being typed count as work when the page is left", async () => {
  await page.locator(".notice").waitFor();
  // The page is fitted to the room beside the notice.
  await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
  const text = await page.locator(".canvas text").first().boundingBox();
  await page.mouse.dblclick(text.x + text.width / 2, text.y + text.height / 2);
  await page.keyboard.type("zz");
  await page.getByRole("button", { name: "Files" }).click();
  await page.getByRole("dialog", { name: "Page 1 is not saved" }).getByRole("button", { name: "Throw it away" }).click();
  await openFile("report.pdf");
});

test("work on a page that is left is kept in the tab, marked, and saved later", async () => {
  await page.getByRole("button", { name: "Files" }).click();
  await openFile("two-pages.pdf");
  await moveFirst(page);
  await page.getByRole("button", { name: "Next page" }).click();
  await page.getByRole("dialog", { name: "Page 1 is not saved" }).getByRole("button", { name: "Keep it" }).click();
  await state(page, "unchanged");
  assert.equal(await page.getByRole("option", { name: "Page 1, not saved" }).count(), 1);
  assert.deepEqual(await leaving(), true);
  await page.getByRole("button", { name: "Page before" }).click();
  await state(page, "changed");
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  await page.getByText("and compared it").waitFor();
  assert.deepEqual(command("log", pages).updates.map((update) => update.pages), [[1, 2], [1]]);
  assert.equal(await page.getByRole("option", { name: /not saved/ }).count(), 0);
  assert.deepEqual(await leaving(), false);
});

// Whether the browser would ask before the tab is closed.
function leaving() {
  return page.evaluate(() => !dispatchEvent(new Event("beforeunload", { cancelable: true })));
}

// Throws the work on page 1 away by leaving it, and comes back; only new work is asked about.
async function throwAway() {
  await moveFirst(page);
  await page.getByRole("button", { name: "Next page" }).click();
  await dialog.getByRole("button", { name: "Throw it away" }).click();
  await page.waitForURL(/\/2$/);
  await state(page, "unchanged");
  await page.getByRole("button", { name: "Page before" }).click();
  await state(page, "unchanged");
}

// Goes from page 1 to page 2, which does not come before `meanwhile` is done; time stands still.
async function leaveWhileOpening(meanwhile) {
  let open = () => undefined;
  const held = new Promise((resolve) => {
    open = resolve;
  });
  await page.route(/\/pages\/2\/open$/, async (route) => {
    await held;
    await route.continue().catch(() => undefined);
  }, { times: 1 });
  await page.clock.install();
  await page.clock.pauseAt(await page.evaluate(() => Date.now() + 3_600_000));
  await page.evaluate(() => { location.hash = "#2/2"; });
  await page.locator(".page-row[aria-selected=true][aria-posinset='2']").waitFor();
  await meanwhile();
  await page.clock.resume();
  open();
}

test("what is done to a page until the next one is there is kept as its work", async () => {
  await moveFirst(page);
  await page.keyboard.press("Control+z");
  await state(page, "unchanged");
  await leaveWhileOpening(async () => {
    await page.keyboard.press("ArrowRight");
  });
  await page.getByRole("option", { name: "Page 1, not saved" }).waitFor();
  await state(page, "unchanged");
  await page.getByRole("button", { name: "Page before" }).click();
  await state(page, "changed");
  await page.getByRole("button", { name: "Next page" }).click();
  await page.waitForURL(/\/2$/);
  await state(page, "unchanged");
  await page.evaluate(() => { location.hash = "#2/1"; });
  await state(page, "changed");
  await throwAway();
});

test("what is done to a page that is left is kept whatever is opened next", async () => {
  await page.evaluate(() => { location.hash = "#2/1"; });
  await state(page, "unchanged");
  await moveFirst(page);
  await page.keyboard.press("Control+z");
  await state(page, "unchanged");
  await leaveWhileOpening(async () => {
    await page.keyboard.press("ArrowRight");
    await page.evaluate(() => { location.hash = "#2/1"; });
  });
  await state(page, "changed");
  await throwAway();
});

test("an address that is typed while a save is asked about leads nowhere", async () => {
  await moveFirst(page);
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).waitFor();
  await page.evaluate(() => { location.hash = "#2/2"; });
  await page.waitForURL(/\/1$/);
  await page.keyboard.press("Escape");
  await page.keyboard.press("Control+z");
  await state(page, "unchanged");
});

test("a page is not left when the question is closed; thrown away is gone", async () => {
  await moveFirst(page);
  await page.getByRole("button", { name: "Next page" }).click();
  await page.getByRole("dialog", { name: "Page 1 is not saved" }).waitFor();
  await page.keyboard.press("Escape");
  assert.equal(await page.getByRole("textbox", { name: "Page" }).inputValue(), "1");
  await page.getByRole("button", { name: "Next page" }).click();
  await dialog.getByRole("button", { name: "Throw it away" }).click();
  await page.waitForURL(/\/2$/);
  await state(page, "unchanged");
  await page.getByRole("button", { name: "Page before" }).click();
  await page.waitForURL(/\/1$/);
  await state(page, "unchanged");
  assert.deepEqual(await leaving(), false);
  assert.deepEqual(faults, []);
});
