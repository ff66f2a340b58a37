import assert from "node:assert/strict";
import { test } from "node:test";
import { load } from "./load.mjs";

const { Thumbnails } = await load("views/pages/thumbnails.ts");

// Pictures that the test itself finishes.
function bench({ atOnce = 2, pixels = 1000 } = {}) {
  const running = new Map();
  const ready = [];
  let most = 0;
  const thumbnails = new Thumbnails((page, signal) => new Promise((resolve, reject) => {
    running.set(page, { resolve, reject, signal });
    signal.addEventListener("abort", () => {
      running.delete(page);
      reject(new Error("given up"));
    });
    most = Math.max(most, running.size);
  }), (page) => ready.push(page), { atOnce, pixels });
  const settle = () => new Promise((resolve) => setTimeout(resolve));
  const finish = async (page, width = 10, height = 10) => {
    const { resolve } = running.get(page);
    running.delete(page);
    resolve({ width, height });
    await settle();
  };
  const fail = async (page) => {
    const { reject } = running.get(page);
    running.delete(page);
    reject(new Error("no picture"));
    await settle();
  };
  return { thumbnails, running, ready, finish, fail, settle, most: () => most };
}

test("never more than two pictures are made at once, in the order of wanting", async () => {
  const { thumbnails, running, ready, finish, most } = bench();
  thumbnails.want([5, 6, 7, 8]);
  assert.deepEqual([...running.keys()], [5, 6]);
  await finish(6);
  assert.deepEqual([...running.keys()], [5, 7]);
  await finish(5);
  await finish(7);
  await finish(8);
  assert.deepEqual(ready, [6, 5, 7, 8]);
  assert.equal(most(), 2);
});

test("what is out of view is given up, and does not come back", async () => {
  const { thumbnails, running, ready, settle } = bench();
  thumbnails.want([1, 2, 3]);
  const given = [...running.values()];
  thumbnails.want([2, 9]);
  await settle();
  assert.deepEqual(given.map(({ signal }) => signal.aborted), [true, false]);
  assert.deepEqual([...running.keys()].sort(), [2, 9]);
  assert.deepEqual(ready, []);
});

test("a picture that cannot be made is not tried again until the page changes", async () => {
  const { thumbnails, running, fail } = bench();
  thumbnails.want([4]);
  await fail(4);
  thumbnails.want([4]);
  assert.equal(running.size, 0);
  assert.equal(thumbnails.failure(4), "no picture");
  thumbnails.forget(4);
  assert.deepEqual([...running.keys()], [4]);
});

test("the budget drops what was out of view longest, and keeps what is in view", async () => {
  const { thumbnails, finish } = bench({ pixels: 250 });
  for (const page of [1, 2]) {
    thumbnails.want([page]);
    await finish(page);
  }
  thumbnails.want([1]); // Seen again: page 2 is the older one now.
  thumbnails.want([3]);
  await finish(3);
  assert.deepEqual([1, 2, 3].map((page) => thumbnails.get(page) !== undefined), [true, false, true]);
  assert.equal(thumbnails.pixels, 200);
  thumbnails.want([7]);
  await finish(7, 100, 100);
  assert.notEqual(thumbnails.get(7), undefined);
  assert.equal(thumbnails.pixels, 10_000);
});

test("a page that changed while it was drawn is drawn again", async () => {
  const { thumbnails, running, finish } = bench();
  thumbnails.want([1]);
  const first = running.get(1);
  thumbnails.forget(1);
  assert.equal(first.signal.aborted, true);
  first.resolve({ width: 1, height: 1 });
  await finish(1, 2, 2);
  assert.deepEqual(thumbnails.get(1), { width: 2, height: 2 });
});
