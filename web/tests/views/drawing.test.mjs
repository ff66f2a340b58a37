import assert from "node:assert/strict";
import { test } from "node:test";
import { load } from "./load.mjs";

const { lostPixels, viewBox } = await load("views/drawing.ts");

// A picture of letters: "#" black, "+" gray, "r" red, "." white.
function picture(...rows) {
  const colours = { "#": [0, 0, 0], "+": [128, 128, 128], r: [255, 0, 0], ".": [255, 255, 255], ",": [230, 230, 230] };
  return Uint8ClampedArray.from(rows.flatMap((row) => [...row].flatMap((letter) => [...colours[letter], 255])));
}

test("what is gone or has another colour differs; what is a pixel aside or smoothed otherwise does not", () => {
  const bar = picture("........", "..##....", "..##....", "........");
  for (const [name, other, gone, come] of [
    ["the same", bar, 0, 0],
    ["a pixel aside", picture("........", "...##...", "...##...", "........"), 0, 0],
    ["smoothed", picture(",,,,,,,,", ",,##,,,,", ",,##,,,,", ",,,,,,,,"), 0, 0],
    ["half a pixel aside", picture("........", "..+#+...", "..+#+...", "........"), 0, 0],
    ["gone", picture("........", "........", "........", "........"), 4, 0],
    ["red", picture("........", "..rr....", "..rr....", "........"), 4, 0],
    ["elsewhere", picture("........", "......##", "......##", "........"), 4, 4],
    ["more", picture("........", "..##...+", "..##...+", "........"), 0, 2],
  ]) {
    assert.deepEqual([lostPixels(bar, other, 8, 40), lostPixels(other, bar, 8, 40)], [gone, come], name);
  }
});

test("the size of a drawing is that of its viewBox", () => {
  for (const [svg, width, height] of [
    ['<svg viewBox="0 0 595 842">', 595, 842], ['<?xml?><svg a="b" viewBox="1,2 30.5,40">', 30.5, 40], ["<svg>", 600, 800],
    ['<svg viewBox="0 0 0 5">', 600, 800],
  ]) {
    assert.deepEqual(viewBox(svg), { width, height });
  }
});
