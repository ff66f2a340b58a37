// What the program makes of edits: each changes what was edited, and all else keeps its bytes.
import assert from "node:assert/strict";
import { after, test } from "node:test";
import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import { withEditor } from "../help/editor.mjs";

const top = fileURLToPath(new URL("../../..", import.meta.url));
const corvane = process.env.CORVANE_PROGRAM ?? join(top, "build/corvane");
const examples = process.env.CORVANE_EXAMPLES ?? join(top, "examples");
const folder = mkdtempSync(join(tmpdir(), "corvane-editor-"));
after(() => rmSync(folder, { recursive: true, force: true }));

const editor = withEditor();

function opened(name) {
  const svg = join(folder, `${name}.svg`);
  execFileSync(corvane, ["open", join(examples, `${name}.pdf`), "-o", svg, "--images", "embed"], { stdio: "ignore" });
  return readFileSync(svg, "utf8");
}

function trial(name, svg) {
  const file = join(folder, `${name}.svg`);
  writeFileSync(file, svg);
  const said = execFileSync(corvane, ["save", file, join(examples, `${name}.pdf`), "--dry-run", "--json"], { stdio: ["ignore", "pipe", "ignore"] });
  return JSON.parse(said);
}

const select = ids => editor.page.evaluate(wanted => {
  editor.select(wanted.map(id => editor.root.querySelector(`#${id}`)));
  document.querySelector(".artwork-stage").focus();
}, ids);
const enter = async (group, label, value) => {
  await editor.frames();
  const field = editor.page.getByRole("group", { name: group, exact: true }).getByLabel(label, { exact: true });
  await field.fill(value);
  await field.press("Enter");
};
const drop = id => editor.page.evaluate(async key => {
  const data = new DataTransfer();
  const canvas = new OffscreenCanvas(20, 20);
  canvas.getContext("2d").fillRect(0, 0, 10, 20);
  data.items.add(new File([await canvas.convertToBlob()], "a.png", { type: "image/png" }));
  const { x, y, width, height } = editor.root.querySelector(`#${key}`).getBoundingClientRect();
  const changed = new Promise(resolve => editor.addEventListener("change", resolve, { once: true }));
  document.querySelector(".artwork-stage").dispatchEvent(
    new DragEvent("drop", { clientX: x + width / 2, clientY: y + height / 2, dataTransfer: data, bubbles: true, cancelable: true }));
  await changed;
}, id);

// Counts that are not named are 0.
const cases = [
  ["report", "a word", async () => { await select(["p4"]); await editor.press("Enter"); await editor.page.keyboard.type("A quiet summer"); await editor.press("Enter"); }, { changed: 1 }],
  ["report", "a moved shape", async () => { await select(["p5"]); await editor.press("ArrowRight"); }, { changed: 1 }],
  ["report", "a moved text", async () => { await select(["p6"]); await editor.press("Shift+ArrowDown"); }, { changed: 1 }],
  ["report", "a colour", async () => { await select(["p5"]); await enter("Fill", "Colour", "#ff0000"); }, { changed: 1 }],
  ["report", "a size and an angle", async () => { await select(["p5"]); await enter("Place", "Width", "90"); await enter("Place", "Angle", "10"); }, { changed: 1 }],
  ["report", "a duplicate", async () => { await select(["p5"]); await editor.press("Control+d"); }, { added: 1 }],
  ["report", "a deleted one", async () => { await select(["p5"]); await editor.press("Delete"); }, { removed: 1 }],
  ["report", "one in front of all", async () => { await select(["p5"]); await editor.press("Control+Shift+]"); }, { moved: 1 }],
  ["report", "a group", async () => { await select(["p5", "p6"]); await editor.press("Control+g"); }, {}],
  ["report", "a new rectangle", async () => { await editor.press("r"); await editor.drag([10, 10], [60, 40]); }, { added: 1 }],
  ["report", "a new text", async () => { await editor.press("t"); await editor.click(40, 300); await editor.page.keyboard.type("New"); await editor.press("Escape"); }, { added: 1 }],
  ["harbour", "an ink", async () => { await select(["p7"]); await enter("Line", "Black", "20"); }, { changed: 1 }],
  ["harbour", "a moved group, its clip with it", async () => { await select(["g2"]); await editor.press("ArrowDown"); }, { changed: 3 }],
  ["harbour", "a deleted and restored group", async () => { await select(["g2"]); await editor.press("Delete", "Control+z"); }, {}],
  ["invoice", "a picture", () => drop("p1"), { changed: 1 }],
  ["scan", "a moved picture", async () => { await editor.page.evaluate(() => editor.select([editor.root.querySelector("image")])); await editor.page.locator(".artwork-stage").focus(); await editor.press("ArrowDown"); }, { changed: 1 }],
  ["map", "a hidden and a locked layer", () => editor.page.evaluate(() => {
    const layer = editor.layers.find(each => each.name === "Railway");
    editor.setLayerHidden(layer, true);
    editor.setLayerLocked(layer, true);
  }), { changed: 1 }],
];

for (const [name, what, work, expected] of cases) {
  test(`${name}: ${what}`, { skip: !existsSync(corvane) }, async () => {
    const svg = opened(name);
    await editor.show(svg);
    await work();
    await editor.frames();
    const { changed, added, removed, moved, patched, error } = trial(name, await editor.text());
    assert.deepEqual({ changed, added, removed, moved, patched, error }, { changed: 0, added: 0, removed: 0, moved: 0, patched: true, error: null, ...expected });
    while (await editor.page.evaluate(() => editor.canUndo)) await editor.page.evaluate(() => editor.undo());
    const back = await editor.text();
    assert.equal(back, svg);
    assert.equal(trial(name, back).nothing, true);
  });
}

for (const [from, id] of [["report", "p4"], ["report", "p5"], ["invoice", "p1"], ["harbour", "g2"]]) {
  test(`${from}: ${id} is pasted into the map as something new`, { skip: !existsSync(corvane) }, async () => {
    await editor.show(opened(from));
    await select([id]);
    await editor.press("Control+c");
    await editor.show(opened("map"));
    await editor.press("Control+v");
    const { changed, added, removed, moved, patched, error } = trial("map", await editor.text());
    assert.ok(added > 0, `${added} added`);
    assert.deepEqual({ changed, removed, moved, patched, error }, { changed: 0, removed: 0, moved: 0, patched: true, error: null });
  });
}
