import assert from "node:assert/strict";
import { build } from "esbuild";
import { readFileSync, writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { fileURLToPath } from "node:url";
import { load } from "./load.mjs";
import { page as pdfPage, pdf } from "./pdf.mjs";
import { closeBrowser, command, example, visit, workFolder } from "./serve.mjs";

const { pieces, countElements } = await load("views/pieces.ts");
const work = workFolder();

after(async () => {
  await closeBrowser();
  work.remove();
});

const root = '<svg viewBox="0 0 9 9">';
const shapes = (count, name = "path") => Array.from({ length: count }, (_, index) => `<${name} d="M${index}"/>`).join("");

test("pieces hold every element once, in groups as they were, behind what they refer to", () => {
  for (const [name, svg, most, wanted] of [
    ["short", `${root}<g>${shapes(2)}</g></svg>`, 10, [`${root}<g>${shapes(2)}</g></svg>`]],
    ["cut in a group", `${root}<g clip-path="url(#c)"><path d="1"/><path d="2"/><path d="3"/></g></svg>`, 3, [
      `${root}<g clip-path="url(#c)"><path d="1"/></g></svg>`, `${root}<g clip-path="url(#c)"><path d="2"/><path d="3"/></g></svg>`]],
    ["a group as one thing", `${root}<g opacity=".5">${shapes(4)}</g>${shapes(2)}</svg>`, 3, [
      `${root}<g opacity=".5">${shapes(4)}</g></svg>`, `${root}${shapes(2)}</svg>`]],
    ["a text is not cut", `${root}<text><tspan>a</tspan><tspan>b</tspan></text><path/></svg>`, 2, [
      `${root}<text><tspan>a</tspan><tspan>b</tspan></text></svg>`, `${root}<path/></svg>`]],
    ["definitions go along", `${root}<clipPath id="c"><path/></clipPath><g><path/></g><path/></svg>`, 3, [
      `${root}<clipPath id="c"><path/></clipPath></svg>`, `${root}<clipPath id="c"><path/></clipPath><g><path/></g><path/></svg>`]],
    ["fonts go where there is text", `${root}<style>f</style><path/><path/><path/><path/><text>a</text></svg>`, 3, [
      `${root}<style>f</style><path/></svg>`, `${root}<path/><path/><path/></svg>`, `${root}<style>f</style><text>a</text></svg>`]],
    ["blending", `${root}<g style="mix-blend-mode:multiply"/>${shapes(9)}</svg>`, 3, [
      `${root}<g style="mix-blend-mode:multiply"/>${shapes(9)}</svg>`]],
  ]) {
    assert.deepEqual([...pieces(svg, most)], wanted, name);
  }
  assert.equal(countElements(`${root}<g>${shapes(3)}</g></svg>`, 100), 5);
  assert.equal(countElements(`${root}${shapes(30)}</svg>`, 7), 7);
});

// A page of the browser with a module of ours as `made`.
async function withModule(path) {
  const made = await build({
    entryPoints: [fileURLToPath(new URL(`../../src/${path}`, import.meta.url))],
    bundle: true, format: "iife", globalName: "made", write: false, logLevel: "warning",
  });
  const { page } = await visit("about:blank");
  await page.evaluate(made.outputFiles[0].text.replace("var made", "globalThis.made"));
  return page;
}

function opened(file) {
  const art = work.path(`${file.split("/").at(-1)}.svg`);
  assert.equal(command("open", file, "-o", art, "--images", "embed").error, null);
  return readFileSync(art, "utf8");
}

test("pages drawn in pieces look as they do when drawn at once", async () => {
  const page = await withModule("views/pieces.ts");
  writeFileSync(work.path("clipped.pdf"), pdf([pdfPage("q 50 50 200 300 re W n .9 .2 .2 rg 0 0 150 400 re f 0 0 1 rg 150 0 150 400 re f Q " +
    "q 100 100 100 100 re W n 0 1 0 rg 0 0 300 400 re f 0 g 120 120 20 20 re f Q 0 g 0 0 20 20 re f")]), "latin1");
  const files = ["report", "map", "invoice", "harbour", "scan", "turned"].map((name) => example(`${name}.pdf`));
  for (const file of [...files, work.path("clipped.pdf")]) {
    const [count, different] = await page.evaluate(async (svg) => {
      const draw = async (parts) => {
        const canvas = Object.assign(document.createElement("canvas"), { width: 400, height: 500 });
        const brush = canvas.getContext("2d");
        for (const part of parts) {
          const image = new Image();
          image.src = URL.createObjectURL(new Blob([part], { type: "image/svg+xml" }));
          await image.decode();
          brush.drawImage(image, 0, 0, 400, 500);
        }
        return brush.getImageData(0, 0, 400, 500).data;
      };
      const parts = [...globalThis.made.pieces(svg, 5)];
      const [once, cut] = [await draw([svg]), await draw(parts)];
      return [parts.length, once.filter((level, at) => Math.abs(level - cut[at]) > 8).length];
    }, opened(file));
    assert.ok(count > 1 || /harbour|turned|scan/.test(file), `${file} is ${count} pieces`);
    assert.ok(different <= 40, `${file}: ${different} levels differ`);
  }
});
