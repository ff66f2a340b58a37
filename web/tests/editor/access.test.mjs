// Names and roles of the editor's own controls, and fingers in place of a mouse.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { createRequire } from "node:module";
import { test } from "node:test";
import { withEditor } from "../help/editor.mjs";

const editor = withEditor();
const page = `<path id="a" fill="#ff0000" data-fill-cmyk="0 1 1 0" data-fill-spot="Red" stroke="#000000" stroke-dasharray="3 2" d="M20 20H60V60H20Z"/>
  <text id="t" x="20" y="200" font-size="20">Hello</text><image id="i" x="200" y="20" width="90" height="90" href="data:image/png;base64,"/>`;

test("axe finds nothing, whatever is selected", async () => {
  await editor.show(page);
  await editor.page.evaluate(await readFile(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8"));
  for (const key of ["Tab", "Tab", "Tab", "Control+a"]) {
    await editor.press(key);
    const found = await editor.page.evaluate(async () => (await axe.run({ exclude: [["[role=application] svg"]] }, { rules: { region: { enabled: false } } }))
      .violations.flatMap(({ id, nodes }) => nodes.map(({ html }) => `${id}: ${html}`)));
    assert.deepEqual(found.filter(line => !/page-has-heading|landmark/.test(line)), []);
  }
});

test("the toolbar is one stop of Tab, arrows go on", async () => {
  await editor.show(page);
  await editor.page.getByRole("button", { name: "Select" }).focus();
  await editor.press("ArrowRight", "ArrowRight");
  const focused = () => editor.page.evaluate(() => document.activeElement.getAttribute("aria-label"));
  assert.equal(await focused(), "Rectangle");
  await editor.press("ArrowLeft", "ArrowLeft", "ArrowLeft");
  assert.equal(await focused(), "Whole page");
  assert.equal(await editor.page.locator("#toolbar [tabindex='0']").count(), 1);
});

test("a finger taps and pans, two zoom", async () => {
  await editor.show(page);
  const cdp = await editor.page.context().newCDPSession(editor.page);
  const touch = (type, ...points) => cdp.send("Input.dispatchTouchEvent", { type, touchPoints: points.map(([x, y], id) => { const [px, py] = editor.at(x, y); return { x: px, y: py, id }; }) });
  const paper = () => editor.page.evaluate(() => { const { x, y, width } = document.querySelector(".artwork-paper").getBoundingClientRect(); return { x, y, width }; });
  await touch("touchStart", [40, 40]);
  await touch("touchEnd");
  await editor.frames();
  assert.deepEqual(await editor.ids(), ["a"]);
  const before = await paper();
  await touch("touchStart", [400, 300]);
  await touch("touchMove", [410, 300]);
  await touch("touchMove", [430, 320]);
  await touch("touchEnd");
  const panned = await paper();
  assert.deepEqual([panned.x - before.x, panned.y - before.y, panned.width - before.width], [30, 20, 0]);
  await touch("touchStart", [200, 200], [300, 200]);
  await touch("touchMove", [200, 200], [350, 200]);
  await touch("touchMove", [200, 200], [400, 200]);
  await touch("touchEnd");
  assert.equal(Math.round((await paper()).width / panned.width * 10) / 10, 2);
});
