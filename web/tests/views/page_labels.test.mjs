import assert from "node:assert/strict";
import { test } from "node:test";
import { load } from "./load.mjs";

const { labelOf, meantPage } = await load("views/pages/page_labels.ts");

const pages = ["i", "ii", "II", "4", "1", undefined, "2001"].map((label, index) => ({ page: index + 1, label }));

test("a label that is the page's number says nothing", () => {
  assert.deepEqual(pages.map(labelOf), ["i", "ii", "II", undefined, "1", undefined, "2001"]);
  assert.equal(labelOf(undefined), undefined);
});

test("numbers go before labels, labels as they are written before those nearly so", () => {
  for (const [typed, meant] of [
    ["1", 1], ["5", 5], ["2001", 7], ["8", undefined], ["ii", 2], ["II", 3], [" I ", 1], ["iI", 2],
    ["", undefined], ["-1", undefined], ["1.0", undefined],
  ]) {
    assert.equal(meantPage(typed, pages), meant, typed);
  }
});
