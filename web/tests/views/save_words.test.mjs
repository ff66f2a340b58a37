import assert from "node:assert/strict";
import { test } from "node:test";
import { load } from "./load.mjs";

const { appended, lossSentences, shortSummary } = await load("views/save_words.ts");

const report = (more) => ({
  formerLength: 1000, length: 3345, kept: 5, changed: 0, added: 0, removed: 0, moved: 0, warnings: [], missing: [],
  annotationsKept: [], fontsAdded: [], layersLeftOut: [], layersNotKept: [], ...more,
});

test("a save is summed up by what it does, not by what it leaves", () => {
  for (const [more, wanted] of [
    [{ changed: 1 }, "1 changed; 2,345 bytes appended"],
    [{ changed: 1200, added: 2, removed: 3, moved: 4 }, "1,200 changed, 2 added, 3 removed and 4 moved; 2,345 bytes appended"],
    [{}, "no object changed; 2,345 bytes appended"],
  ]) {
    assert.equal(shortSummary(report(more)), wanted);
  }
  assert.equal(appended(report({ length: undefined, formerLength: undefined })), 0);
});

test("losses are said in words, each once", () => {
  assert.deepEqual(lossSentences(report({
    missing: [{ kind: "text", missing: 3, whole: 81 }, { kind: "all", missing: 3, whole: 123 }],
    annotationsKept: ["15 (Square)"],
    warnings: [{ code: 1006, sentence: "switch: 1 element ignored; the saved page does not have that" }],
  })), [
    "3 of 81 texts of the page are not in the drawing any more.", "3 of 123 objects of the page are not in the drawing any more.",
    "Stay as the file has them: 15 (Square).", "Switch: 1 element ignored; the saved page does not have that.",
  ]);
  assert.deepEqual(lossSentences(report({})), []);
});
