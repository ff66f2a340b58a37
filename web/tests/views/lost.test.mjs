import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { closeBrowser, command, downloaded, moveFirst, serve, state, visit, workFolder } from "./serve.mjs";

const work = workFolder();
const report = work.copy("report.pdf");
const server = await serve(report);
const { page } = await visit(server.address);
const dialog = page.getByRole("dialog");
page.on("dialog", (question) => void question.accept());
const notice = (text) => page.locator(".notice").getByText(text);

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

test("an answer that is lost while saving leaves it open whether it was saved, and keeps the work", async () => {
  await state(page, "unchanged");
  await page.route(/\/save(\?|$)/, (route) => route.abort("connectionreset"), { times: 1 });
  await moveFirst(page);
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await notice(/It is not known whether page 1 was saved/).waitFor();
  await state(page, "failed");
  assert.doesNotMatch(await page.locator(".status").textContent(), /Saved/);
  // The next request finds the program again.
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  assert.equal(await page.locator(".notice").count(), 0);
});

// Saves another title into the file, as another program would.
async function changeElsewhere(from, to) {
  const art = work.path("other.svg");
  command("open", report, "-o", art, "--images", "embed");
  writeFileSync(art, readFileSync(art, "utf8").replace(from, to));
  assert.equal(command("save", art, report, "--page", "1").error, null);
  await page.evaluate(() => dispatchEvent(new Event("focus")));
  await notice("report.pdf was changed by another program or tab.").waitFor();
}

test("a file that another program changed is said, and opened anew when wanted", async () => {
  await page.getByText("and compared it").waitFor();
  await changeElsewhere("A busy summer", "A long summer");
  await page.getByRole("button", { name: "Open it anew" }).click();
  await state(page, "unchanged");
  assert.equal(await page.locator(".notice").count(), 0);
  const length = readFileSync(report).length;
  await page.keyboard.press("Control+s");
  await page.getByRole("dialog", { name: "Nothing to save" }).waitFor();
  await page.keyboard.press("Escape");
  assert.match(readFileSync(await downloaded(page), "utf8"), /A long summer/);
  assert.equal(readFileSync(report).length, length);
});

test("work that was begun since is not lost by opening anew", async () => {
  await changeElsewhere("A long summer", "A short summer");
  await moveFirst(page);
  const [beside] = await Promise.all([page.waitForEvent("popup"), page.getByRole("button", { name: "Open it anew" }).click()]);
  await beside.close();
  await state(page, "changed");
  await page.keyboard.press("Control+z");
  await state(page, "unchanged");
});

test("work that is begun while the page is opened anew is not lost either", async () => {
  await changeElsewhere("A short summer", "A cold summer");
  const release = await hold(/\/api\/files\/1$/);
  await page.getByRole("button", { name: "Open it anew" }).click();
  await moveFirst(page);
  release();
  await page.waitForTimeout(500);
  await state(page, "changed");
  await page.reload();
  await state(page, "unchanged");
});

// Answers to an address wait until what this gives is called.
async function hold(address) {
  let release = () => undefined;
  const held = new Promise((resolve) => {
    release = resolve;
  });
  await page.route(address, async (route) => {
    await held;
    await route.continue();
  });
  return release;
}

test("a server that was killed is said; the work stays, can be taken away, and saves by the command line", async () => {
  await moveFirst(page);
  await server.stop("SIGKILL");
  await page.keyboard.press("Control+s");
  await notice(/The program does not answer any more/).waitFor();
  assert.equal(await page.getByText("Not saved", { exact: true }).isVisible(), true);
  await page.keyboard.press("Tab");
  await page.keyboard.press("ArrowRight");
  const art = await downloaded(page, page.locator(".notice").getByRole("button", { name: "Download as SVG" }).first());
  const saved = command("save", art, report, "--page", "1");
  assert.equal(saved.error, null);
  assert.ok(saved.changed + saved.moved > 0);
});

test("a program that was started anew is told apart from the one that this tab belongs to", async () => {
  const port = new URL(server.address).port;
  const next = await serve(report, "--port", port);
  await notice(/started anew, and this tab belongs to the one before/).waitFor();
  await page.goto(next.address);
  await state(page, "unchanged");
  await next.stop();
});
