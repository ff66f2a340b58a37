// Pictures replaced and added.
import assert from "node:assert/strict";
import { test } from "node:test";
import { withEditor } from "../help/editor.mjs";

const editor = withEditor();
const old = "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==";
const image = `<image id="a" x="0" y="0" width="1" height="1" preserveAspectRatio="none" transform="matrix(100 0 0 100 20 20)" style="image-orientation:none" data-image="1-2 3" image-rendering="pixelated" href="${old}"/>`;

// Drops a picture of the type and size at a point of the page.
const drop = (at, type, width, height) => editor.page.evaluate(async ([[x, y], kind, w, h]) => {
  const canvas = new OffscreenCanvas(w, h);
  canvas.getContext("2d").fillRect(0, 0, w / 2, h);
  const blob = kind === "text/plain" ? new Blob(["no picture"]) : await canvas.convertToBlob({ type: kind });
  const data = new DataTransfer();
  data.items.add(new File([blob], "picture", { type: kind }));
  const before = told.messages.length;
  const changed = new Promise(resolve => editor.addEventListener("change", resolve, { once: true }));
  const said = (async () => { while (told.messages.length === before) await new Promise(requestAnimationFrame); })();
  document.querySelector(".artwork-stage").dispatchEvent(new DragEvent("drop", { clientX: x, clientY: y, dataTransfer: data, bubbles: true, cancelable: true }));
  await Promise.race([changed, said]);
}, [editor.at(...at), type, width, height]);

for (const [type, expected] of [["image/png", "png"], ["image/jpeg", "jpeg"], ["image/webp", "png"]]) {
  test(`${type} in the place of another`, async () => {
    const svg = await editor.show(image);
    await drop([60, 60], type, 30, 10);
    const address = await editor.value("a", "href");
    assert.ok(address.startsWith(`data:image/${expected};base64,`) && address !== old);
    const text = await editor.text();
    assert.equal(text.replace(address, old), svg.replace(" style=\"image-orientation:none\"", "").replace(" image-rendering=\"pixelated\"", ""));
    await editor.press("Control+z");
    assert.equal(await editor.text(), svg);
  });
}

test("with its own proportions it is as large as fits", async () => {
  await editor.show(image);
  await editor.click(60, 60);
  await editor.page.getByLabel("Keep the new picture’s proportions").check();
  const chooser = editor.page.waitForEvent("filechooser");
  await editor.page.getByRole("button", { name: "Replace picture…" }).click();
  const bytes = await editor.page.evaluate(async () => {
    const canvas = new OffscreenCanvas(40, 10);
    canvas.getContext("2d").fillRect(0, 0, 9, 9);
    return [...new Uint8Array(await (await canvas.convertToBlob()).arrayBuffer())];
  });
  await (await chooser).setFiles({ name: "a.png", mimeType: "image/png", buffer: Buffer.from(bytes) });
  await editor.page.waitForFunction(() => editor.isChanged);
  assert.equal(await editor.value("a", "transform"), "matrix(100 0 0 25 20 57.5)");
});

test("a new one lies where it was dropped", async () => {
  const svg = await editor.show("");
  await drop([200, 200], "image/png", 80, 40);
  assert.match(await editor.text(), /<image x="170" y="185" width="60" height="30" preserveAspectRatio="none" href="data:image\/png;base64,/);
  await editor.press("Control+z");
  assert.equal(await editor.text(), svg);
});

test("what is no picture is refused in words", async () => {
  const svg = await editor.show(image);
  await drop([60, 60], "text/plain", 1, 1);
  assert.match(await editor.page.evaluate(() => told.messages.at(-1)), /not a picture/);
  assert.equal(await editor.text(), svg);
});
