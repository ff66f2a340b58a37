// Letters typed in place: what was retyped changes, runs and shifts of all else stay.
import assert from "node:assert/strict";
import { test } from "node:test";
import { page600, withEditor } from "../help/editor.mjs";

const editor = withEditor();

const head = "<text id=\"t\" x=\"20\" y=\"60\" font-family=\"monospace\" font-size=\"40\"";
const runs = `${head}>Ab<tspan id="s" dx="-.05">cd</tspan><tspan id="u" letter-spacing="1">ef</tspan></text>`;
const retyped = [
  ["a letter in a run", runs, "AbcXdef", s => s.replace("cd", "cXd")],
  ["a letter between runs belongs to the one before", runs, "AbcdXef", s => s.replace("cd", "cdX")],
  ["in front", runs, "XAbcdef", s => s.replace("Ab", "XAb")],
  ["a letter less", runs, "Acdef", s => s.replace("Ab", "A")],
  ["over runs", runs, "AXf", s => s.replace(">Ab<tspan id=\"s\" dx=\"-.05\">cd</tspan>", ">AX").replace(">ef<", ">f<")],
  ["a run is gone with its letters", runs, "Abef", s => s.replace("<tspan id=\"s\" dx=\"-.05\">cd</tspan>", "")],
  ["marks", runs, "Ab<&>def", s => s.replace("cd", "&lt;&amp;&gt;d")],
  ["blanks that XML would drop", runs, "Ab  cdef", s => s.replace("font-size=\"40\"", "$& xml:space=\"preserve\"").replace("Ab", "Ab  ")],
  ["a blank at the end", `${head}>Hi</text>`, "Hi ", s => s.replace("font-size=\"40\"", "$& xml:space=\"preserve\"").replace("Hi", "Hi ")],
  ["blanks that were dropped stay so", `${head}>  A\n  b </text>`, "A Xb", s => s.replace("  b", "  Xb")],
  ["blanks that were dropped, where blanks are kept now", `${head}>  A\n  b </text>`, "A  b", s => s.replace("font-size=\"40\"", "$& xml:space=\"preserve\"").replace("  A\n  b ", "A  b")],
  ["blanks that are kept", `${head} xml:space="preserve">  A  b </text>`, "  A  Xb ", s => s.replace("A  b", "A  Xb")],
  ["letters beyond the first plane", `${head}>a𝒜b</text>`, "a𝒜cb", s => s.replace("a𝒜b", "a𝒜cb")],
  ["a text as data", `${head}><![CDATA[a<b]]></text>`, "a<bc", s => s.replace("<![CDATA[a<b]]>", "a&lt;bc")],
  ["the first letter of nothing", `${head}/>`, "Hi", s => s.replace("font-size=\"40\"/>", "font-size=\"40\">Hi</text>")],
];
for (const [name, body, wanted, expected] of retyped) {
  test(name, async () => {
    const svg = page600(body);
    const [shown, changed, undone] = await editor.page.evaluate(([text, string]) => {
      const tree = document.createElement("div").attachShadow({ mode: "open" });
      document.body.append(tree.host);
      const art = new parts.Artwork(text, tree);
      let letters;
      art.run("type", () => {
        letters = new parts.Letters(art, art.root.querySelector("#t"));
        letters.become(string);
        letters.tidy();
      });
      const results = [letters.string, art.text()];
      art.undo();
      tree.host.remove();
      return [...results, art.text()];
    }, [svg, wanted]);
    assert.deepEqual([shown, changed, undone], [wanted, expected(svg), svg]);
  });
}

test("a double click puts the caret where it is; Enter ends; one step", async () => {
  const svg = await editor.show(`${head}>Hello</text>`);
  const [x] = await editor.page.evaluate(() => { const { x, width } = editor.root.querySelector("#t").getExtentOfChar(2); return [x + width * 0.2]; });
  await editor.click(x, 50, { clickCount: 2 });
  await editor.page.keyboard.type("XY");
  assert.equal(await editor.page.evaluate(() => editor.root.querySelector("#t").textContent), "HeXYllo");
  await editor.press("Backspace", "Enter");
  assert.equal(await editor.text(), svg.replace("Hello", "HeXllo"));
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
  assert.equal(await editor.page.evaluate(() => document.activeElement.className), "artwork-stage");
});

test("Enter selects all letters to type over; a click elsewhere ends; text() takes what is being typed", async () => {
  const svg = await editor.show(`${head}>Hello</text>`);
  await editor.press("Tab", "Enter");
  await editor.page.keyboard.type("Bye");
  assert.equal(await editor.page.evaluate(() => editor.root.querySelector("#t").textContent), "Bye");
  assert.equal(await editor.page.evaluate(() => editor.isChanged), true);
  assert.equal(await editor.text(), svg.replace("Hello", "Bye"));
  await editor.press("Enter");
  await editor.page.keyboard.type("Ciao");
  await editor.click(400, 400);
  assert.equal(await editor.text(), svg.replace("Hello", "Ciao"));
  assert.deepEqual(await editor.ids(), []);
});

test("a word is deleted letter by letter, and another typed", async () => {
  const svg = await editor.show(`${head}>A busy summer</text>`);
  await editor.press("Tab", "Enter", "Home", "ArrowRight", "ArrowRight", ...Array(4).fill("Delete"));
  assert.equal(await editor.page.evaluate(() => editor.root.querySelector("#t").textContent), "A  summer");
  await editor.page.keyboard.type("long");
  await editor.press("Enter");
  assert.equal(await editor.text(), svg.replace("busy", "long"));
});

test("a text without letters is gone", async () => {
  const svg = await editor.show(`${head}>Hello</text>`);
  await editor.press("Tab", "Enter", "Delete", "Enter");
  assert.equal((await editor.order("layer1")).length, 0);
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("a new text stands where the click was; without letters there is none", async () => {
  const svg = await editor.show("");
  await editor.press("t");
  await editor.click(100, 90);
  await editor.press("Escape");
  assert.equal(await editor.text(), svg);
  assert.equal(await editor.page.evaluate(() => editor.canUndo), false);
  await editor.press("t");
  await editor.click(100, 90);
  await editor.page.keyboard.type("New");
  await editor.press("Enter");
  assert.match(await editor.text(), /<text x="100" y="90" font-family="sans-serif" font-size="12" fill="#000000">New<\/text><\/g>/);
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("new rectangles and lines, by hand and by the keyboard", async () => {
  const svg = await editor.show("");
  await editor.press("r");
  await editor.drag([100, 90], [160, 130]);
  await editor.press("l");
  await editor.drag([10, 10], [100, 17], ["Shift"]);
  const datas = () => editor.page.evaluate(() => [...editor.root.querySelectorAll("path")].map(path => path.getAttribute("d")));
  const [rectangle, line] = await datas();
  assert.equal(rectangle, "M100 90H160V130H100Z");
  assert.match(line, /^M10 10L100\.27\d* 10$/);
  await editor.page.getByRole("button", { name: "Rectangle" }).focus();
  await editor.press("Enter");
  assert.equal((await datas()).length, 3);
  await editor.press("Shift+ArrowLeft");
  for (let i = 0; i < 4; ++i) await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});
