// A page of 60,000 elements: what is done to it counts, and how long its longest task takes is told.
import assert from "node:assert/strict";
import { test } from "node:test";
import { page600, withEditor } from "../help/editor.mjs";

const editor = withEditor();
const count = 60000;

function manyShapes() {
  let seed = 7;
  const next = limit => { seed = (seed * 48271) % 2147483647; return seed / 2147483647 * limit; };
  let body = "";
  for (let i = 1; i <= count; ++i) {
    const x = next(580);
    const y = next(480);
    const w = 1 + next(8);
    body += `\n  <path id="p${i}" fill="#${Math.floor(next(0xffffff)).toString(16).padStart(6, "0")}" d="M${x.toFixed(2)} ${y.toFixed(2)}h${w.toFixed(2)}v${w.toFixed(2)}L${x.toFixed(2)} ${(y + w).toFixed(2)}Z"/>`;
  }
  return page600(body);
}

// The longest task of the page's own thread while the work goes on, in time of the processor: what other programs on the
// machine take does not count.
async function longest(work) {
  const browser = editor.page.context().browser();
  await browser.startTracing(editor.page, { categories: ["toplevel", "disabled-by-default-devtools.timeline", "__metadata"] });
  await work();
  await editor.page.waitForTimeout(200);
  const { traceEvents } = JSON.parse(await browser.stopTracing());
  const threads = new Set(traceEvents.filter(event => event.name === "thread_name" && event.args.name === "CrRendererMain").map(event => `${event.pid} ${event.tid}`));
  const tasks = traceEvents.filter(event => event.name.endsWith("RunTask") && event.tdur !== undefined && threads.has(`${event.pid} ${event.tid}`));
  assert.ok(tasks.length > 0);
  return Math.max(...tasks.map(event => event.tdur)) / 1000;
}

const works = [
  ["panning", async () => { for (let i = 0; i < 30; ++i) { await editor.page.mouse.wheel(7, 5); await editor.frames(); } }],
  ["selecting", async () => { for (const [x, y] of [[100, 100], [200, 150], [300, 300]]) await editor.click(x, y); }],
  ["moving one", async () => editor.drag([300, 300], [360, 330])],
  ["moving by a key", async () => { await editor.click(300, 300); for (let i = 0; i < 5; ++i) await editor.press("ArrowRight"); }],
  ["undoing and doing again", async () => editor.press("Control+z", "Control+z", "Control+Shift+z")],
  ["a rectangle around some", async () => { await editor.drag([-20, -20], [60, 60]); }],
  ["recolouring", async () => {
    await editor.click(250, 250);
    // Playwright's own selectors would walk over all elements, within the page.
    await editor.page.evaluate(() => {
      const field = [...document.querySelectorAll("fieldset")].find(set => set.firstChild.textContent === "Fill").querySelector("input[type=text]");
      field.value = field.value === "#00ff00" ? "#00ff01" : "#00ff00";
      field.dispatchEvent(new Event("change"));
    });
    await editor.frames();
  }],
  ["selecting all", async () => { await editor.page.evaluate(() => document.querySelector(".artwork-stage").focus()); await editor.press("Control+a"); }],
  ["panning with all selected", async () => { for (let i = 0; i < 10; ++i) { await editor.page.mouse.wheel(-7, -5); await editor.frames(); } }],
  ["zooming", async () => {
    await editor.page.keyboard.down("Control");
    for (let i = 0; i < 6; ++i) { await editor.page.mouse.wheel(0, -30); await editor.frames(); }
    await editor.page.keyboard.up("Control");
  }],
];

test("60,000 elements", async t => {
  const svg = manyShapes();
  await editor.show(svg);
  assert.equal(await editor.text(), svg);
  await editor.page.waitForTimeout(1500); // the browser draws, the boxes are measured
  for (const [name, work] of works) {
    await t.test(name, async () => {
      await editor.toCorner();
      const pause = await longest(work);
      if (name === "selecting all") assert.equal((await editor.ids()).length, count);
      t.diagnostic(`${name}: ${Math.round(pause)} ms`);
      if (!name.startsWith("panning") && name !== "zooming") assert.notEqual(await editor.page.evaluate(() => told.words), "Nothing is selected");
    });
  }
});

// Looks at siblings are counted, on the way from the key to the last of them.
test("all of 4,000 shapes are moved forward and backward with a few looks at each", async () => {
  const many = 4000;
  await editor.show(page600(Array.from({ length: many }, (_, i) => `<path id="p${i + 1}" d="M${i % 500} 9h3v3Z"/>`).join("")));
  await editor.page.evaluate(() => {
    globalThis.looks = 0;
    for (const [prototype, name] of [[Element.prototype, "nextElementSibling"], [Element.prototype, "previousElementSibling"]]) {
      const { get } = Object.getOwnPropertyDescriptor(prototype, name);
      Object.defineProperty(prototype, name, { configurable: true, get() { ++looks; return get.call(this); } });
    }
    // From one of two siblings to the other.
    const compare = Node.prototype.compareDocumentPosition;
    Node.prototype.compareDocumentPosition = function (other) { looks += 1000; return compare.call(this, other); };
  });
  await editor.press("Control+a");
  for (const key of ["Control+]", "Control+["]) {
    await editor.page.evaluate(() => { looks = 0; });
    await editor.press(key);
    const looks = await editor.page.evaluate(() => globalThis.looks);
    assert.ok(looks >= many && looks < 10 * many, `${key}: ${looks}`);
  }
});

// Each with a clip of its own: what looks at all of them for each of them takes many seconds.
test("8,000 clipped shapes are duplicated, brought to front and deleted", async t => {
  let body = "";
  for (let i = 1; i <= 8000; ++i) {
    const [x, y] = [(i * 7919) % 580, (i * 104729) % 480];
    body += `\n<g><clipPath id="c${i}"><path d="M0 0H600V500H0Z"/></clipPath><path clip-path="url(#c${i})" d="M${x} ${y}h3v3Z"/></g>`;
  }
  await editor.show(page600(body));
  for (const key of ["Control+d", "Control+Shift+]", "Delete"]) {
    await editor.press("Control+a");
    const start = performance.now();
    await editor.press(key);
    t.diagnostic(`${key}: ${Math.round(performance.now() - start)} ms`);
    if (key !== "Delete") await editor.press("Control+z");
  }
  assert.equal(await editor.page.evaluate(() => editor.root.querySelectorAll("clipPath, path").length), 0);
});
