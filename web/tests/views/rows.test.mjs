import assert from "node:assert/strict";
import { test } from "node:test";
import { load } from "./load.mjs";

const { Rows, fitted } = await load("views/pages/rows.ts");

test("the rows in view are those that a window over the list shows", () => {
  const rows = new Rows([10, 20, 30, 40]);
  for (const [top, height, first, end] of [
    [0, 5, 0, 1], [0, 10, 0, 2], [9, 1, 0, 2], [10, 19, 1, 2], [29, 2, 1, 3], [60, 40, 3, 4], [500, 10, 3, 4], [-5, 5, 0, 1],
  ]) {
    assert.deepEqual(rows.inView(top, height), { first, end }, `${height} pixels at ${top}`);
  }
  assert.deepEqual(new Rows([]).inView(0, 100), { first: 0, end: 0 });
  assert.equal(rows.height, 100);
});

test("a row is scrolled into view by the shortest way", () => {
  const rows = new Rows([10, 20, 30, 40]);
  for (const [index, top, wanted] of [[0, 50, 0], [3, 0, 70], [1, 5, 5], [2, 0, 30], [1, 20, 10]]) {
    assert.equal(rows.scrolledTo(index, top, 30), wanted, `row ${index} from ${top}`);
  }
});

test("a million rows are found by halving", () => {
  const rows = new Rows(Array.from({ length: 1_000_000 }, () => 7));
  for (let at = 0; at < 100_000; at++) {
    assert.equal(rows.at(at * 70 + 3), at * 10);
  }
});

test("a page fits its frame as it is turned", () => {
  const page = (cropBox, rotate = 0) => ({ cropBox, rotate });
  for (const [facts, width, height] of [
    [page([0, 0, 100, 200]), 84, 168], [page([0, 0, 100, 200], 90), 112, 56], [page([0, 0, 100, 200], 180), 84, 168],
    [page([100, 200, 0, 0], 270), 112, 56], [page([0, 0, 1, 14400]), 1, 168],
    [page([null, null, null, null]), 112, 112], [page([0, 0, 0, 0]), 112, 112],
  ]) {
    assert.deepEqual(fitted(facts, 112, 168), { width, height });
  }
});
