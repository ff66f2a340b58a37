// Duplicates, order, groups, copies: what stands where afterwards.
import assert from "node:assert/strict";
import { test } from "node:test";
import { withEditor } from "../help/editor.mjs";

const editor = withEditor();
const square = (id, x, more = "") => `<path id="${id}" data-source="1 2 3 a434" fill="#336699" d="M${x} 20H${x + 40}V60H${x}Z"${more}/>`;
const four = ["a", "b", "c", "d"].map((id, i) => square(id, 20 + 60 * i)).join("");
const select = ids => editor.page.evaluate(wanted => {
  editor.select(wanted.map(id => editor.root.querySelector(`#${id}`)));
  document.querySelector(".artwork-stage").focus();
}, ids);

const orders = [
  [["b"], "Control+]", "a c b d"], [["b", "c"], "Control+]", "a d b c"], [["a", "c"], "Control+]", "b a d c"], [["c", "d"], "Control+]", "a b c d"],
  [["c"], "Control+[", "a c b d"], [["b", "c"], "Control+[", "b c a d"], [["a", "b"], "Control+[", "a b c d"],
  [["a", "c"], "Control+Shift+]", "b d a c"], [["b", "d"], "Control+Shift+[", "b d a c"], [["d"], "Control+Shift+]", "a b c d"],
];
for (const [chosen, key, expected] of orders) {
  test(`${chosen.join(" and ")}, ${key}`, async () => {
    const svg = await editor.show(four);
    await select(chosen);
    await editor.press(key);
    assert.equal((await editor.order("layer1")).join(" "), expected);
    await editor.press("Control+z");
    assert.equal(await editor.text(), svg);
  });
}

test("a duplicate lies in front of its original, a little aside, and has its source and no id", async () => {
  const svg = await editor.show(four);
  await select(["b"]);
  await editor.press("Control+d");
  assert.equal(await editor.text(), svg.replace(square("b", 80), `$&${square("b", 80, " transform=\"translate(10 10)\"").replace("id=\"b\" ", "")}`));
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("a duplicate has clips of its own, and lives without its original", async () => {
  await editor.show(`<g id="g" clip-path="url(#k)"><clipPath id="k"><path d="M0 0H9V9H0Z"/></clipPath><linearGradient id="q"><stop/></linearGradient>
    <path id="a" style="stroke:url(#q)" fill="url(#q)" d="M0 0H90V90H0Z"/></g><path id="b" fill="url(#q)" d="M200 0H290V90H200Z"/>`);
  await select(["g"]);
  await editor.press("Control+d");
  const [clip, fill, style, ids] = await editor.page.evaluate(() => {
    const [copy] = editor.selection;
    const path = copy.querySelector(":scope > path");
    return [copy.getAttribute("clip-path"), path.getAttribute("fill"), path.getAttribute("style"), [...copy.children].map(child => child.id)];
  });
  assert.equal(clip, `url(#${ids[0]})`);
  assert.equal(fill, `url(#${ids[1]})`);
  assert.equal(style, `stroke:url(#${ids[1]})`);
  assert.ok(ids[0] !== "k" && ids[1] !== "q" && ids[2] === "" && ids[0] !== ids[1]);
});

test("what others name stays when the group around it is deleted", async () => {
  const svg = await editor.show(`<g id="g"><linearGradient id="q"><stop/></linearGradient><linearGradient id="r"><stop/></linearGradient>${square("a", 20)}</g><path id="b" fill="url(#q)" stroke="url(&quot;#r&quot;)" d="M200 0H290V90H200Z"/>`);
  await select(["g"]);
  await editor.press("Delete");
  assert.equal((await editor.order("layer1")).join(" "), "q r b");
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("grouped and taken apart again", async () => {
  const svg = await editor.show(four);
  await select(["a", "c"]);
  await editor.press("Control+g");
  assert.equal((await editor.order("layer1")).join(" "), "b g d");
  await editor.press("Shift+ArrowRight", "Control+Shift+g");
  assert.equal((await editor.order("layer1")).join(" "), "b a c d");
  assert.deepEqual([await editor.value("a", "transform"), await editor.ids()], ["translate(10 0)", ["a", "c"]]);
  for (let i = 0; i < 3; ++i) await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("taken apart, a group leaves its clip and its paint to what was in it", async () => {
  await editor.show(`<clipPath id="k"><path d="M0 0H50V50H0Z"/></clipPath><g id="g" transform="translate(5 5)" stroke="#ff0000" clip-path="url(#k)">${square("a", 20, " transform=\"scale(2)\"")}</g>`);
  await select(["g"]);
  await editor.press("Control+Shift+g");
  const found = await editor.page.evaluate(() => {
    const group = editor.root.querySelector("#a").parentElement;
    return [group.getAttribute("clip-path"), group.getAttribute("transform"), group.parentElement.id];
  });
  assert.deepEqual(found, ["url(#k)", "translate(5 5)", "layer1"]);
  assert.deepEqual([await editor.value("a", "stroke"), await editor.value("a", "transform"), await editor.value("g", "id")], ["#ff0000", "scale(2)", null]);
});

test("refused, and why", async () => {
  const svg = await editor.show(`<g id="g" opacity=".5">${square("a", 20)}</g><g id="h">${square("b", 90)}</g>`);
  await select(["g"]);
  await editor.press("Control+Shift+g");
  assert.match(await editor.page.evaluate(() => told.messages.at(-1)), /look different/);
  await select(["a", "b"]);
  await editor.press("Control+g");
  assert.match(await editor.page.evaluate(() => told.messages.at(-1)), /different groups/);
  assert.equal(await editor.text(), svg);
});

test("copied, cut and pasted", async () => {
  const svg = await editor.show(`<g id="g" transform="translate(100 0)">${square("a", 20)}</g>${square("b", 20)}`);
  await select(["a"]);
  await editor.press("Control+c", "Escape", "Escape", "Control+v", "Control+v");
  const shifts = () => editor.page.evaluate(() => [...editor.root.querySelectorAll("#layer1 > path:not([id])")].map(path => path.getAttribute("transform")));
  assert.deepEqual(await shifts(), ["translate(110 10)", "translate(120 20)"]);
  for (let i = 0; i < 2; ++i) await editor.press("Control+z");
  await select(["b"]);
  await editor.press("Control+x");
  assert.equal((await editor.order("layer1")).join(" "), "g");
  await editor.press("Control+v");
  assert.deepEqual(await shifts(), [null]);
  for (let i = 0; i < 2; ++i) await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("pasted into another page, objects are new ones with definitions and ids of their own", async () => {
  const fade = (id, more) => `<linearGradient id="${id}"${more}><stop offset="0" stop-color="#ff0000"/></linearGradient>`;
  await editor.show(`${fade("q", " href=\"#r\"")}${fade("r", "")}${fade("s", "")}<g transform="translate(5 0)"><g id="g" data-form="12 3" inkscape:label="Form" fill="url(#q)"><!--c-->${square("a", 20)}<path id="p7" data-kept="6 4 12-00" d="M0 0H9V9Z"/></g>${square("b", 80, " clip-path=\"url(#k)\"")}</g><clipPath id="k"><path d="M0 0H500V500Z"/></clipPath>`);
  await select(["g", "b"]);
  await editor.press("Control+x");
  const other = await editor.show(square("q", 20));
  await editor.press("Control+v");
  const clip = "new-clipPath1";
  const made = `<defs><clipPath id="${clip}"><path d="M0 0H500V500Z"/></clipPath></defs><path fill="#336699" d="M80 20H120V60H80Z" clip-path="url(#${clip})" transform="translate(5 0)"/>`;
  assert.equal(await editor.text(), other.replace(square("q", 20), `$&${made}`));
  assert.match(await editor.page.evaluate(() => told.messages.at(-1)), /cannot leave their page/);
  assert.deepEqual(await editor.ids(), ["path"]);
  await editor.press("Control+v", "Control+z", "Control+z");
  assert.equal(await editor.text(), other);

  await editor.show(`${fade("q", " href=\"#r\"")}${fade("r", "")}${fade("s", "")}<g id="g" data-form="12 3" inkscape:label="Form" fill="url(#q)"><!--c-->${square("a", 20)}</g>`);
  await select(["g"]);
  await editor.press("Control+c");
  await editor.show(other);
  await editor.press("Control+v");
  const text = await editor.text();
  const [first, second] = ["new-linearGradient1", "new-linearGradient2"];
  assert.ok(text.includes(`<defs>${fade(first, ` href="#${second}"`)}${fade(second, "")}</defs><g fill="url(#${first})"><path fill="#336699" d="M20 20H60V60H20Z"/></g>`), text);
});

test("layers are hidden and locked as the file says it, in all of their groups", async () => {
  const svg = await editor.show(`<g id="l" data-layer="4" inkscape:label="Grid" display="none">${square("a", 20)}</g><g id="m" data-layer="4" inkscape:label="Grid" display="none"/><g id="n" data-layer="5" inkscape:label="Names"/>`);
  const layers = () => editor.page.evaluate(() => editor.layers.map(({ name, isHidden, isLocked, depth }) => [name, isHidden, isLocked, depth]));
  assert.deepEqual(await layers(), [["Page", false, false, 0], ["Grid", true, false, 1], ["Names", false, false, 1]]);
  await editor.page.evaluate(() => {
    editor.setLayerHidden(editor.layers[1], false);
    editor.setLayerLocked(editor.layers[1], true);
    editor.setLayerHidden(editor.layers[0], true);
  });
  assert.deepEqual(await layers(), [["Page", true, false, 0], ["Grid", false, true, 1], ["Names", false, false, 1]]);
  const said = " sodipodi:insensitive=\"true\"";
  assert.equal(await editor.text(), svg.replaceAll(" inkscape:label=\"Grid\" display=\"none\"", ` inkscape:label="Grid"${said}`)
    .replace("data-producer=\"corvane\"", "$& xmlns:sodipodi=\"http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd\"").replace("inkscape:groupmode=\"layer\"", "$& display=\"none\""));
  for (let i = 0; i < 3; ++i) await editor.page.evaluate(() => editor.undo());
  assert.equal(await editor.text(), svg);
});
