// Paint, lines and opacity: what is seen, and the hidden values beside it.
import assert from "node:assert/strict";
import { test } from "node:test";
import { withEditor } from "../help/editor.mjs";

const editor = withEditor();
const shape = more => `<path id="a" ${more} d="M20 20H60V60H20Z"/>`;
const fill = () => editor.page.getByRole("group", { name: "Fill", exact: true });
const line = () => editor.page.getByRole("group", { name: "Line", exact: true });
const enter = async (field, value) => { await field.fill(value); await field.press("Enter"); };

const cases = [
  ["a colour", "fill=\"#ed9e47\" data-fill-rgb=\".93 .62 .28\"", () => enter(fill().getByLabel("Colour", { exact: true }), "#FF0000"),
    { fill: "#ff0000", "data-fill-rgb": null }],
  ["a gray", "data-fill-gray=\".25\" fill=\"#404040\"", () => enter(fill().getByLabel("Colour", { exact: true }), "888"), { fill: "#888888", "data-fill-gray": null }],
  ["what is no colour", "fill=\"#ed9e47\"", () => enter(fill().getByLabel("Colour", { exact: true }), "redd"), { fill: "#ed9e47" }],
  ["none", "fill=\"#66e5f2\" data-fill-cmyk=\".6 .1 .05 0\"", () => fill().getByRole("combobox").selectOption("None"), { fill: "none", "data-fill-cmyk": null }],
  ["an amount of ink", "fill=\"#66e5f2\" data-fill-cmyk=\".6 .1 .05 0\"", () => enter(fill().getByLabel("Black"), "50"),
    { fill: "#006673", "data-fill-cmyk": ".6 .1 .05 .5" }],
  ["inks from a colour", "fill=\"#ff8000\"", () => fill().getByRole("combobox").selectOption("Inks (CMYK)"), { fill: "#ff8000", "data-fill-cmyk": "0 .498 1 0" }],
  ["a spot colour's strength", "fill=\"#ff8080\" data-fill-cmyk=\"0 1 1 0\" data-fill-spot=\"Red\" data-fill-tint=\".5\"", () => enter(fill().getByLabel("Strength"), "100"),
    { fill: "#ff0000", "data-fill-cmyk": "0 1 1 0", "data-fill-spot": "Red", "data-fill-tint": null }],
  ["a spot colour's name", "fill=\"#ff0000\" data-fill-cmyk=\"0 1 1 0\" data-fill-spot=\"Red\"", () => enter(fill().getByLabel("Name"), "Warm & red"), { "data-fill-spot": "Warm & red", fill: "#ff0000" }],
  ["a spot colour becomes a colour", "fill=\"#ff0000\" data-fill-cmyk=\"0 1 1 0\" data-fill-spot=\"Red\"", () => fill().getByRole("combobox").selectOption("Colour"),
    { fill: "#ff0000", "data-fill-cmyk": null, "data-fill-spot": null }],
  ["a line", "fill=\"#336699\"", () => line().getByRole("combobox").selectOption("Colour"), { stroke: "#000000", fill: "#336699" }],
  ["a line's width", "fill=\"#336699\" stroke=\"#000000\" stroke-width=\".25\" data-stroke-width=\"0\"", () => enter(editor.page.getByLabel("Line width"), "3"),
    { "stroke-width": "3", "data-stroke-width": null }],
  ["dashes", "fill=\"#336699\" stroke=\"#000000\" stroke-width=\"2\"", () => editor.page.getByLabel("Dashes", { exact: true }).selectOption("Dashed"), { "stroke-dasharray": "8 4" }],
  ["lengths of dashes", "fill=\"#336699\" stroke=\"#000000\" stroke-dasharray=\"1 2\" data-stroke-dasharray=\"1 2.00001\"", () => enter(editor.page.getByLabel("Lengths"), "3, 4 5"),
    { "stroke-dasharray": "3 4 5", "data-stroke-dasharray": null }],
  ["no dashes", "fill=\"#336699\" stroke=\"#000000\" stroke-dasharray=\"1 2\"", () => editor.page.getByLabel("Dashes", { exact: true }).selectOption("Solid"), { "stroke-dasharray": null }],
  ["opacity", "fill=\"#336699\"", () => enter(editor.page.getByRole("spinbutton", { name: "Opacity" }), "40"), { opacity: ".4" }],
  ["opacity of a style", "fill=\"#336699\" style=\"opacity:.5;mix-blend-mode:multiply\"", () => enter(editor.page.getByRole("spinbutton", { name: "Opacity" }), "40"),
    { opacity: ".4", style: "mix-blend-mode:multiply" }],
  ["a colour over a style", "style=\"fill:#00ff00\"", () => enter(fill().getByLabel("Colour", { exact: true }), "#123456"), { fill: "#123456", style: null }],
];

for (const [name, attributes, work, expected] of cases) {
  test(name, async () => {
    const svg = await editor.show(shape(attributes));
    await editor.click(40, 40);
    await work();
    await editor.frames();
    for (const [attribute, value] of Object.entries(expected)) assert.equal(await editor.value("a", attribute), value, attribute);
    while (await editor.page.evaluate(() => editor.canUndo)) await editor.page.evaluate(() => editor.undo());
    assert.equal(await editor.text(), svg);
  });
}

const shown = [
  ["fill=\"#66e5f2\" data-fill-cmyk=\".6 .1 .05 0\"", "Inks (CMYK)"],
  ["fill=\"#ff0000\" data-fill-cmyk=\".6 .1 .05 0\"", "Colour"], // changed in another editor: the inks do not count
  ["fill=\"#ff8080\" data-fill-cmyk=\"0 1 1 0\" data-fill-spot=\"Red\" data-fill-tint=\".5\"", "Spot colour"],
  ["fill=\"#102030\" data-fill-cmyk=\"0 1 1 0\" data-fill-spot=\"Red\" data-fill-tint=\".5\"", "Colour"],
  ["fill=\"#e64d1a\" data-fill-cmyk=\".1 .6 .8 .1\" data-fill-origin=\"rgb\"", "Colour"],
  ["fill=\"none\" stroke=\"#000000\" stroke-width=\"30\"", "None"],
  ["fill=\"url(#q)\"", "Gradient or pattern"],
];
test("the panel says which kind of paint it is", async () => {
  for (const [attributes, expected] of shown) {
    await editor.show(`<linearGradient id="q"><stop stop-color="#00ff00"/></linearGradient>${shape(attributes)}`);
    await editor.click(25, 25);
    assert.equal(await fill().getByRole("combobox").evaluate(select => select.selectedOptions[0].text), expected, attributes);
  }
});

test("a group's shapes and a text's runs are painted", async () => {
  await editor.show(`<g id="g">${shape("fill=\"#336699\"")}<path id="b" fill="#000000" d="M0 0H9V9Z"/></g><text id="t" x="200" y="100" font-size="40" fill="#101010" data-fill-gray=".07">A<tspan id="s" fill="#ff0000" data-fill-cmyk="0 1 1 0">B</tspan></text>`);
  await editor.page.evaluate(() => editor.select([...editor.root.querySelectorAll("#g,#t")]));
  await editor.frames();
  await enter(fill().getByLabel("Colour", { exact: true }), "#00ff00");
  for (const id of ["a", "b", "t", "s"]) assert.equal(await editor.value(id, "fill"), "#00ff00", id);
  assert.deepEqual([await editor.value("t", "data-fill-gray"), await editor.value("s", "data-fill-cmyk"), await editor.value("g", "fill")], [null, null, null]);
});
