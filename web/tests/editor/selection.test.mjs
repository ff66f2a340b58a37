// What a click, a rectangle, a double click and the keyboard select.
import assert from "node:assert/strict";
import { test } from "node:test";
import { page600, withEditor } from "../help/editor.mjs";

const editor = withEditor();

const square = (id, x, y, more = "") => `<path id="${id}" fill="#336699" d="M${x} ${y}H${x + 40}V${y + 40}H${x}Z" ${more}/>`;
const page = `${square("a", 20, 20)}${square("b", 100, 20)}<g id="g">${square("c", 20, 100)}<g id="h">${square("d", 100, 100)}${square("e", 160, 100)}</g></g>
  <path id="thin" fill="none" stroke="#000000" stroke-width=".5" d="M300 20V200"/>
  <text id="unseen" x="400" y="210" font-size="40" fill="none">HHHH</text>`;

test("clicks", async () => {
  await editor.show(page);
  const steps = [
    [[40, 40], {}, ["a"]],
    [[120, 40], { modifiers: ["Shift"] }, ["a", "b"]],
    [[40, 40], { modifiers: ["Shift"] }, ["b"]],
    [[120, 120], {}, ["g"]],
    [[303, 90], {}, ["thin"]], [[306, 90], {}, []], [[410, 200], {}, ["unseen"]],
    [[500, 400], {}, []],
  ];
  for (const [[x, y], { modifiers = [] }, expected] of steps) {
    for (const key of modifiers) await editor.page.keyboard.down(key);
    await editor.click(x, y);
    for (const key of modifiers) await editor.page.keyboard.up(key);
    assert.deepEqual(await editor.ids(), expected, `at ${x}, ${y}`);
  }
});

test("double clicks go into groups, Escape goes out, a click elsewhere too", async () => {
  await editor.show(page);
  await editor.click(120, 120, { clickCount: 2 });
  assert.deepEqual(await editor.ids(), ["h"]);
  await editor.click(120, 120, { clickCount: 2 });
  assert.deepEqual(await editor.ids(), ["d"]);
  await editor.click(180, 120);
  assert.deepEqual(await editor.ids(), ["e"]);
  await editor.press("Escape");
  assert.deepEqual(await editor.ids(), ["h"]);
  await editor.press("Escape");
  assert.deepEqual(await editor.ids(), ["g"]);
  await editor.press("Escape");
  assert.deepEqual(await editor.ids(), []);
  await editor.click(120, 120, { clickCount: 2 });
  await editor.click(40, 40);
  await editor.click(180, 120);
  assert.deepEqual(await editor.ids(), ["g"]);
});

test("a rectangle selects what is wholly in it", async () => {
  await editor.show(page);
  await editor.drag([5, 5], [150, 70]);
  assert.deepEqual(await editor.ids(), ["a", "b"]);
  await editor.drag([5, 90], [210, 160], ["Shift"]);
  assert.deepEqual(await editor.ids(), ["g"]);
  await editor.drag([5, 5], [50, 50]);
  assert.deepEqual(await editor.ids(), []);
});

test("the keyboard goes from object to object, into groups, and away from the page", async () => {
  await editor.show(page);
  const steps = [["Tab", ["a"]], ["Tab", ["b"]], ["Tab", ["g"]], ["Shift+Tab", ["b"]], ["Tab", ["g"]], ["Enter", ["c"]], ["Tab", ["h"]],
    ["Escape", ["g"]], ["a", ["g"]], ["Shift+Tab", ["g", "b"]], ["Shift+Tab", ["g", "a"]], ["a", ["g", "a"]], ["Tab", ["g", "a", "b"]], ["Control+a", ["a", "b", "g", "thin", "unseen"]], ["Escape", []]];
  for (const [key, expected] of steps) {
    await editor.press(key);
    assert.deepEqual(await editor.ids(), expected, key);
  }
  await editor.press("Escape", "Tab");
  assert.equal(await editor.page.evaluate(() => document.activeElement?.classList.contains("artwork-stage")), false);
});

test("clips and layers around the whole page are gone through", async () => {
  await editor.show(`<clipPath id="k"><path d="M0 0H600V500H0Z"/></clipPath><g id="w" clip-path="url(#k)"><g id="l" data-layer="4">
    ${square("a", 0, 0)}${square("b", 100, 20)}</g><path id="ground" fill="#eeeeee" d="M0 0H600V500H0Z"/></g>`);
  await editor.page.evaluate(() => editor.root.querySelector("#w").prepend(editor.root.querySelector("#ground")));
  await editor.click(120, 40);
  assert.deepEqual(await editor.ids(), ["b"]);
  await editor.click(400, 400);
  assert.deepEqual(await editor.ids(), ["ground"]);
});

test("what cannot be changed says why", async () => {
  const locked = `<g id="l" data-layer="4" data-locked="true">${square("a", 20, 20)}</g>${square("b", 10, 10)}`;
  const svg = page600(locked).replace("</svg>", `<g id="annotations" data-annotations="15 4" data-locked="true"><g data-form="15 4">${square("n", 200, 200)}</g></g></svg>`);
  await editor.show(svg);
  await editor.click(45, 45);
  assert.deepEqual(await editor.ids(), ["b"]);
  await editor.click(220, 220);
  assert.match(await editor.page.evaluate(() => told.limits.join()), /Annotations/);
  assert.equal(await editor.page.evaluate(() => told.words), "Annotation");
  await editor.press("ArrowRight", "Delete", "Control+d");
  await editor.drag([220, 220], [260, 260]);
  assert.equal(await editor.text(), svg);
});

test("letters that are drawings are one thing", async () => {
  const svg = await editor.show(`<g id="t3" data-source="5 9 1 a434">${square("a", 20, 20)}${square("b", 80, 20)}</g>`);
  await editor.click(40, 40, { clickCount: 2 });
  assert.deepEqual(await editor.ids(), ["a"]);
  assert.match(await editor.page.evaluate(() => told.limits.join()), /only as a whole/);
  await editor.press("ArrowRight", "Delete");
  assert.equal(await editor.text(), svg);
  await editor.press("Escape", "ArrowRight");
  assert.equal(await editor.value("t3", "transform"), "translate(1 0)");
});

test("a screen reader hears what is selected", async () => {
  await editor.show(`${square("a", 20, 20)}<text id="t" x="20" y="200" font-size="20">Hello  there</text><image id="i" x="200" y="20" width="9" height="9" href="data:image/png;base64,"/>`);
  const live = () => editor.page.locator("[aria-live=polite]").last().textContent();
  const words = [];
  for (let i = 0; i < 3; ++i) {
    await editor.press("Tab");
    words.push(await live());
  }
  await editor.press("Control+a");
  words.push(await live());
  assert.deepEqual(words, ["Shape", "Text “Hello there”", "Picture", "1 shape, 1 text and 1 picture"]);
});

test("a page that is opened again is seen as it was, another one as a whole", async () => {
  const svg = (await editor.show(page)).replace("data-producer", "data-file=\"a.pdf\" data-page=\"1\" data-producer");
  const seen = text => editor.page.evaluate(next => {
    if (next !== null) editor.show(next);
    return document.querySelector(".artwork-mover").style.transform;
  }, text);
  const whole = await seen(svg);
  await editor.press("1");
  await editor.page.mouse.wheel(20, 30);
  await editor.frames();
  const before = await seen(null);
  assert.notEqual(before, whole);
  assert.equal(await seen(svg.replace("#336699", "#000000")), before);
  assert.equal(await seen(svg.replace("data-page=\"1\"", "data-page=\"2\"")), whole);
});

test("once zooming rests the page is drawn at its size", async () => {
  await editor.show("<path fill=\"#000000\" d=\"M0 0H300V500H0Z\"/>");
  await editor.page.keyboard.down("Control");
  await editor.page.mouse.move(...editor.at(300, 250));
  for (let i = 0; i < 7; ++i) await editor.page.mouse.wheel(0, -100);
  await editor.page.keyboard.up("Control");
  await editor.page.waitForFunction(() => document.querySelector(".artwork-mover").style.willChange === "");
  await editor.frames();
  await editor.frames();
  const [x, y] = editor.at(300, 250);
  const picture = (await editor.page.screenshot()).toString("base64");
  const between = await editor.page.evaluate(async ([data, middle, row]) => {
    const bitmap = await createImageBitmap(new Blob([Uint8Array.from(atob(data), letter => letter.charCodeAt(0))]));
    const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
    const context = canvas.getContext("2d");
    context.drawImage(bitmap, 0, 0);
    const { data: bytes } = context.getImageData(middle - 60, row, 120, 1);
    return bytes.filter((byte, i) => i % 4 === 0 && byte > 20 && byte < 235).length;
  }, [picture, x, y]);
  assert.ok(between <= 2, `${between} pixels are neither black nor white`);
});
