import assert from "node:assert/strict";
import { after, test } from "node:test";
import { manyPages } from "./pdf.mjs";
import { closeBrowser, serve, visit, workFolder } from "./serve.mjs";

const work = workFolder();
manyPages(work.path("many.pdf"), 10_000);
const server = await serve(work.path("many.pdf"));
const { page, faults } = await visit(server.address);
await page.clock.install();
const list = page.getByRole("listbox", { name: "Pages" });

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

const active = () => list.evaluate((box) => document.getElementById(box.getAttribute("aria-activedescendant")).getAttribute("aria-label"));
const shownPage = (number) => page.waitForFunction((wanted) =>
  document.querySelector(".page-row[aria-selected=true]")?.getAttribute("aria-posinset") === wanted &&
  document.querySelector(".save-state").dataset.state === "unchanged", String(number));

// Rows fill the list, each with `inside`.
const rowsInView = (inside = ".page-picture") => page.waitForFunction((wanted) => {
  const box = document.querySelector(".page-list").getBoundingClientRect();
  const rows = [...document.querySelectorAll(".page-row")].filter((row) => {
    const at = row.getBoundingClientRect();
    return at.bottom > box.top && at.top < box.bottom;
  });
  return rows.length > 2 && rows.every((row) => row.querySelector(wanted) !== null);
}, inside);
// The page's timers and the times of its events stand still, however slow the machine is.
const stopTime = async () => page.clock.pauseAt(await page.evaluate(() => Date.now() + 3_600_000));

test("of 10,000 pages only those in view exist, wherever the list is", async () => {
  await shownPage(1);
  for (const share of [0, 0.3, 0.77, 1]) {
    await list.evaluate((box, to) => box.scrollTo(0, to * box.scrollHeight), share);
    await page.waitForTimeout(50);
    const rows = await list.locator(".page-row").count();
    assert.ok(rows > 2 && rows < 12, `${rows} rows`);
  }
  assert.equal(await list.locator("[aria-posinset='10000']").getAttribute("aria-setsize"), "10000");
});

test("scrolling through all of it makes few rows in each frame", async () => {
  const made = await list.evaluate(async (box) => {
    let most = 0;
    const watch = new MutationObserver((changes) => {
      most = Math.max(most, changes.reduce((sum, change) => sum + change.addedNodes.length, 0));
    });
    watch.observe(box, { childList: true, subtree: true });
    for (let step = 0; step < 60; step++) {
      box.scrollTop = box.scrollHeight * step / 60;
      await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
    }
    watch.disconnect();
    return most;
  });
  assert.ok(made > 2 && made < 200, `${made} nodes`);
});

test("keys go through the list, digits to a page, Enter opens it", async () => {
  await list.focus();
  for (const [keys, wanted] of [
    [["Home"], "Page 1"], [["ArrowDown", "ArrowDown"], "Page 3"], [["ArrowUp"], "Page 2"], [["End"], "Page 10000"],
    [["ArrowDown"], "Page 10000"], [["4", "3", "2", "1"], "Page 4321"],
  ]) {
    await stopTime();
    for (const key of keys) {
      await list.press(key);
    }
    assert.equal(await active(), wanted, keys.join(" "));
    await page.clock.resume();
  }
  await list.press("Enter");
  await shownPage(4321);
  await list.press("PageDown");
  assert.notEqual(await active(), "Page 4321");
  await page.locator(".canvas").click({ position: { x: 5, y: 5 } });
  await page.keyboard.press("PageDown");
  await shownPage(4322);
});

// How many requests of the page for small pictures are open at once, from now on. The page itself counts: what it gives
// up is closed there at once, and known elsewhere some time later.
const countOpen = () => page.evaluate(() => {
  const send = window.fetch;
  const count = window.openPictures = { now: 0, most: 0 };
  window.fetch = async (path, ...rest) => {
    const counts = String(path).endsWith("/picture") ? 1 : 0;
    count.now += counts;
    count.most = Math.max(count.most, count.now);
    try {
      return await send(path, ...rest);
    } finally {
      count.now -= counts;
    }
  };
});

test("small pictures come for what is in view, two at once, and not for what is scrolled past", async () => {
  const asked = [];
  await page.route(/\/picture$/, async (route) => {
    asked.push(Number(/pages\/(\d+)/.exec(route.request().url())[1]));
    await new Promise((resolve) => setTimeout(resolve, 30));
    await route.continue().catch(() => undefined);
  });
  await countOpen();
  await stopTime();
  for (let step = 0; step < 30; step++) {
    await list.evaluate((box, to) => { box.scrollTop = to; }, 3000 + step * 4000);
    await rowsInView();
  }
  await page.clock.resume();
  await rowsInView("canvas");
  await page.unroute(/\/picture$/);
  const most = await page.evaluate(() => window.openPictures.most);
  assert.ok(most > 0 && most <= 2, `${most} at once`);
  assert.ok(asked.length < 20, `${asked.length} pictures for 30 places`);
  assert.ok(asked.every((number) => number > 300), String(asked));
});

test("a small picture is the page: its colours are there", async () => {
  const colour = await list.evaluate((box) => {
    const canvas = box.querySelector(".page-row canvas");
    return [...canvas.getContext("2d").getImageData(canvas.width / 2, canvas.height / 3, 1, 1).data];
  });
  assert.ok([[242, 230, 217], [230, 242, 255]].some((wanted) => wanted.every((level, at) => Math.abs(level - colour[at]) < 4)),
    String(colour));
  assert.deepEqual(faults, []);
});
