// Moving, resizing and turning, and what is written for it.
import assert from "node:assert/strict";
import { test } from "node:test";
import { withEditor } from "../help/editor.mjs";

const editor = withEditor();
const square = (more = "") => `<path id="a" fill="#336699" ${more} d="M20 20H60V60H20Z"/>`;
const text = "<text id=\"a\" x=\"20\" y=\"60\" font-family=\"sans-serif\" font-size=\"40\">HHHH</text>";
const pixel = "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==";
const image = `<image id="a" x="0" y="0" width="1" height="1" preserveAspectRatio="none" transform="matrix(40 0 0 40 20 20)" href="${pixel}"/>`;

// Selects by a click at 40, 40, then does what the case says.
const cases = [
  ["an arrow key moves by a point", square(), e => e.press("ArrowRight"), { transform: "translate(1 0)" }],
  ["with Shift by ten", square(), e => e.press("Shift+ArrowDown", "Shift+ArrowLeft"), { transform: "translate(-10 10)" }],
  ["there and back is nothing", square(), e => e.press("ArrowDown", "ArrowUp"), { transform: null }],
  ["a drag moves", square(), e => e.drag([40, 40], [140, 70], ["Alt"]), { transform: "translate(100 30)" }],
  ["with Shift along one axis", square(), e => e.drag([40, 40], [140, 47], ["Alt", "Shift"]), { transform: "translate(100 0)" }],
  ["a move in front of a transform", square("transform=\"translate(5 5) scale(1.5)\""), e => e.press("ArrowRight"), { transform: "matrix(1.5 0 0 1.5 6 5)" }],
  ["a text is moved by its place", text, e => e.press("Shift+ArrowRight", "ArrowUp"), { x: "30", y: "59", transform: null }],
  ["a text with places of its own by a transform", text.replace(">HHHH", "><tspan x=\"20\">HHHH</tspan>"), e => e.press("Shift+ArrowRight"), { x: "20", transform: "translate(10 0)" }],
  ["a picture by its transform", image, e => e.press("ArrowRight"), { transform: "matrix(40 0 0 40 21 20)", x: "0" }],
  ["in a turned group the page's direction counts", `<g transform="rotate(90 300 250)"><path id="a" fill="#336699" d="M70 490H110V530H70Z"/></g>`,
    e => e.press("Enter", "ArrowRight"), { transform: "translate(0 -1)" }],
  ["a corner resizes a shape freely", square(), e => e.drag([60, 60], [100, 80], ["Alt"]), { transform: "matrix(2 0 0 1.5 -20 -10)" }],
  ["with Shift in proportion", square(), e => e.drag([60, 60], [100, 62], ["Alt", "Shift"]), { transform: "matrix(2 0 0 2 -20 -20)" }],
  ["a line keeps its width", square("stroke=\"#000000\" stroke-width=\"4\""), e => e.drag([60, 60], [100, 80], ["Alt"]), { d: "M20 20H100V80H20Z", transform: null, "stroke-width": "4" }],
  ["a gradient goes along", `<linearGradient id="q"><stop/></linearGradient>${square("stroke=\"url(#q)\"")}`, e => e.drag([60, 60], [100, 60], ["Alt"]), { d: "M20 20H60V60H20Z", transform: "matrix(2 0 0 1 -20 0)" }],
  ["a side resizes one way", square(), e => e.drag([60, 40], [80, 50], ["Alt"]), { transform: "matrix(1.5 0 0 1 -10 0)" }],
  ["a corner of a picture keeps its proportions", image, e => e.drag([60, 60], [100, 70], ["Alt"]), { transform: "matrix(80 0 0 80 20 20)" }],
  ["over the opposite side a shape is turned round", square(), e => e.drag([60, 40], [0, 40], ["Alt"]), { transform: "matrix(-.5 0 0 1 30 0)" }],
  ["turned by steps of 15 degrees", square(), e => e.drag([40, -4], [84, 38], ["Shift"]), { transform: "matrix(0 1 -1 0 80 0)" }],
  ["a number for X", square(), e => e.type("X", "120"), { transform: "translate(100 0)" }],
  ["a number for Y of a text", text, async e => e.type("Y", String(Number(await e.field("Y")) + 5)), { x: "20", y: "65" }],
  ["a width in numbers", square(), e => e.type("Width", "80"), { transform: "matrix(2 0 0 1 -20 0)" }],
  ["an angle in numbers", image, e => e.type("Angle", "90"), { transform: "matrix(0 40 -40 0 60 20)" }],
  ["a wrong number is none", square(), e => e.type("Width", "0"), { transform: null }],
];

editor.type = async (label, value) => {
  await editor.page.getByLabel(label, { exact: true }).fill(value);
  await editor.page.keyboard.press("Enter");
  await editor.frames();
};
editor.field = label => editor.page.getByLabel(label, { exact: true }).inputValue();

for (const [name, body, work, expected] of cases) {
  test(name, async () => {
    const svg = await editor.show(body);
    await editor.click(40, 40);
    await work(editor);
    for (const [attribute, value] of Object.entries(expected)) assert.equal(await editor.value("a", attribute), value, attribute);
    while (await editor.page.evaluate(() => editor.canUndo)) await editor.page.evaluate(() => editor.undo());
    assert.equal(await editor.text(), svg);
    assert.equal(await editor.page.evaluate(() => editor.isChanged), false);
  });
}

test("what is moved snaps to edges and middles of other things, and of the page", async () => {
  const other = "<path id=\"b\" fill=\"#aa3333\" d=\"M200 200H300V230H200Z\"/>";
  // Left edge to left edge, right to right, left to right, middle to middle; the page's lower edge.
  for (const [to, expected] of [[[222, 92], [180, 52]], [[278, 91], [240, 51]], [[322, 92], [280, 52]], [[253, 302], [210, 262]], [[41, 478], [1, 440]]]) {
    await editor.show(square() + other);
    await editor.click(40, 40);
    await editor.drag([40, 40], to);
    const moved = await editor.value("a", "transform");
    assert.deepEqual(/\((\S+) (\S+)\)/.exec(moved)?.slice(1).map(Number), expected, `to ${to}`);
  }
});

test("several are moved as one step, one within another once", async () => {
  const svg = await editor.show(`<g id="g">${square()}</g><path id="b" fill="#aa3333" d="M200 200H240V240H200Z"/>`);
  await editor.page.evaluate(() => editor.select(["#g", "#a", "#b"].map(id => editor.root.querySelector(id))));
  await editor.page.locator(".artwork-stage").focus();
  await editor.press("ArrowRight");
  assert.deepEqual([await editor.value("g", "transform"), await editor.value("a", "transform"), await editor.value("b", "transform")],
    ["translate(1 0)", null, "translate(1 0)"]);
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
  await editor.press("Control+Shift+z");
  assert.equal(await editor.value("b", "transform"), "translate(1 0)");
});

test("a number that is not finished counts when the text is asked for", async () => {
  const svg = await editor.show(square());
  await editor.click(40, 40);
  await editor.page.getByLabel("X", { exact: true }).fill("30");
  assert.equal(await editor.text(), svg.replace("d=\"M20 20H60V60H20Z\"", "$& transform=\"translate(10 0)\""));
});

test("Escape takes back what the hand is doing", async () => {
  const svg = await editor.show(square());
  await editor.click(40, 40);
  await editor.page.mouse.move(...editor.at(40, 40));
  await editor.page.mouse.down();
  await editor.page.mouse.move(...editor.at(90, 90), { steps: 3 });
  await editor.press("Escape");
  await editor.page.mouse.move(...editor.at(120, 90));
  await editor.page.mouse.up();
  assert.equal(await editor.text(), svg);
  assert.equal(await editor.page.evaluate(() => editor.canUndo), false);
});
