// What a file says of its pages, in the list of pages: labels, and small pictures of its own.
import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { firstMore, page as sheet, pdf } from "./pdf.mjs";
import { closeBrowser, serve, state, visit, workFolder } from "./serve.mjs";

const work = workFolder();
const green = "0 1 0 rg 0 0 300 400 re f";
const more = firstMore(4);
const image = (width, height, data) =>
  `<< /Width ${width} /Height ${height} /BitsPerComponent 8 /ColorSpace /DeviceRGB /Length ${data.length} >>\nstream\n${data}\nendstream`;
const red = (width, height) => "\xFF\x00\x00".repeat(width * height);
writeFileSync(work.path("listed.pdf"), pdf([
  sheet(green, { extra: `/Thumb ${more} 0 R` }),
  sheet(green, { extra: `/Thumb ${more + 1} 0 R` }),
  sheet(green, { extra: `/Thumb ${more + 2} 0 R` }),
  sheet(green, { extra: `/Thumb ${more} 0 R /Rotate 180` }),
], {
  catalog: "/PageLabels << /Nums [0 << /S /r >> 2 << /P <FEFF202E0041> /S /D >> 3 << /S /D /St 4 >>] >>",
  more: [image(30, 40, red(30, 40)), image(40, 30, red(40, 30)), image(30, 40, "damaged")],
}), "latin1");
const server = await serve(work.path("listed.pdf"));
const { page, faults } = await visit(server.address);

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

const names = () => page.locator(".page-name").allTextContents();

test("labels stand beside numbers, without what would turn the text", async () => {
  await state(page, "unchanged");
  assert.deepEqual(await names(), ["1 (i)", "2 (ii)", "3 (\\u202eA1)", "4"]);
});

test("the field of the page takes a label or a number", async () => {
  const field = page.getByRole("textbox", { name: "Page" });
  for (const [typed, at] of [["ii", 2], ["I", 1], ["4", 4], ["nowhere", 4], ["1", 1]]) {
    await field.fill(typed);
    await field.press("Enter");
    await page.waitForURL(new RegExp(`/${at}$`));
    await state(page, "unchanged");
    assert.equal(await field.inputValue(), String(at));
  }
});

test("a page's own small picture is shown where it can be that of the page; others are drawn", async () => {
  await page.waitForFunction(() => document.querySelectorAll(".page-row canvas").length === 4);
  const colours = await page.locator(".page-row").evaluateAll((rows) => rows
    .sort((a, b) => a.getAttribute("aria-posinset") - b.getAttribute("aria-posinset"))
    .map((row) => [...row.querySelector("canvas").getContext("2d").getImageData(50, 60, 1, 1).data.slice(0, 3)].join()));
  assert.deepEqual(colours, ["255,0,0", "0,255,0", "0,255,0", "0,255,0"]);
  assert.deepEqual(faults, []);
});
