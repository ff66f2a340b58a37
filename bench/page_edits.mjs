// Edits first pages in the page of `corvane serve`, by mouse and keys, saves them there, and looks at the files.
//
//     node bench/page_edits.mjs [--edit none|add|recolour|delete|raise] [--most 50] FILE-OR-FOLDER...
//
// Of the PDF files, those in folders included, and taken in an order that is the same each time, the first --most count
// that have something for the edit. The edits: none, where saving at once
// must say that there is nothing to save; a rectangle is drawn; the first fair-sized filled path that a click reaches
// gets another colour, is deleted, or is brought to the front. Counted are:
//   done      the page said "Saved", or that there is nothing to save
//   same      (none) the artwork as the page has it is what `corvane open` writes, but for the names of file and opening
//   kept      the old bytes stand unchanged at the front of the file
//   sound     qpdf --check finds nothing that it did not find before
//   outside   no pixel differs outside the box of the edit (mutool, 72 dpi)
//   words     pdftotext gives the same words as before
// Needs the built tests of the page (cmake --build build --target web_tests), qpdf, mupdf-tools and poppler-utils.

import { spawnSync } from "node:child_process";
import { copyFileSync, mkdtempSync, readFileSync, readdirSync, rmSync, statSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { parseArgs } from "node:util";

const build = new URL("../build/", import.meta.url);
process.env.CORVANE_PROGRAM ??= new URL("corvane", build).pathname;
const { closeBrowser, corvane, downloaded, serve, visit } = await import(new URL("web-tests/tests/views/serve.mjs", build));

const room = 2; // pixels of drawing around the box of an edit

function filesIn(path) {
  if (!statSync(path).isDirectory()) {
    return [path];
  }
  return readdirSync(path).sort().flatMap((name) => (name.endsWith(".pdf") ? [join(path, name)] : []));
}

// The files in another order: neighbours are alike.
function spread(files) {
  const stride = 89; // a prime
  return files.length % stride === 0 ? files : files.map((_, i) => files[(i * stride) % files.length]);
}

function run(program, ...words) {
  return spawnSync(program, words, { maxBuffer: 1 << 28, timeout: 60000 });
}

// The first page in shades of gray: { width, height, samples }.
function drawing(file) {
  const bytes = run("mutool", "draw", "-q", "-r", "72", "-c", "gray", "-F", "pgm", "-o", "-", file, "1").stdout;
  const head = /^P5\s+(\d+)\s+(\d+)\s+255\s/.exec(bytes.subarray(0, 64).toString("latin1"));
  return head && { width: Number(head[1]), height: Number(head[2]), samples: bytes.subarray(head[0].length) };
}

// `box`: left, top, right and bottom as shares of the page; null: nothing may differ.
function isSameOutside(before, after, box) {
  if (!before || !after || before.width !== after.width || before.height !== after.height) {
    return false;
  }
  const [left, top, right, bottom] = box === null ? [2, 2, 2, 2] : box;
  return before.samples.every((sample, i) => {
    const x = i % before.width;
    const y = Math.floor(i / before.width);
    const isInside = x >= left * before.width - room && x <= right * before.width + room &&
      y >= top * before.height - room && y <= bottom * before.height + room;
    return isInside || Math.abs(sample - after.samples[i]) <= 8;
  });
}

const checked = (file) => [0, 3, 2].indexOf(run("qpdf", "--check", file).status);
const words = (file) => run("pdftotext", "-l", "1", "-layout", file, "-").stdout.toString().split(/\s+/).join(" ");

// A path of one colour that a click reaches: the place to click, how deep it is in groups, and its box with room for its line.
function findPath() {
  const paper = document.querySelector(".artwork-paper");
  const tree = paper.shadowRoot;
  const sheet = paper.getBoundingClientRect();
  for (const path of tree.querySelectorAll("svg path")) {
    if (path.closest("defs, clipPath, mask, pattern, [data-annotations], [display=none]") || !path.getAttribute("fill")?.startsWith("#")) {
      continue;
    }
    const box = path.getBoundingClientRect();
    const share = [box.width / sheet.width, box.height / sheet.height];
    if (Math.min(...share) < 0.01 || share[0] * share[1] > 0.5) {
      continue;
    }
    for (let i = 1; i < 64; i++) {
      const x = box.x + (box.width * ((i % 8) + 0.5)) / 8;
      const y = box.y + (box.height * (Math.floor(i / 8) + 0.5)) / 8;
      if (tree.elementFromPoint(x, y) === path) {
        let depth = 0;
        for (let up = path.parentElement; up.localName === "g"; up = up.parentElement) {
          depth += up.getAttribute("inkscape:groupmode") === "layer" ? 0 : 1;
        }
        const line = path.hasAttribute("stroke") ? 6 * Number(path.getAttribute("stroke-width") ?? 1) : 0;
        return {
          x, y, depth,
          box: [(box.left - line - sheet.left) / sheet.width, (box.top - line - sheet.top) / sheet.height,
            (box.right + line - sheet.left) / sheet.width, (box.bottom + line - sheet.top) / sheet.height],
        };
      }
    }
  }
  return null;
}

async function addRectangle(page) {
  const sheet = await page.locator(".artwork-paper").boundingBox();
  await page.getByRole("button", { name: "Rectangle" }).click();
  await page.mouse.move(sheet.x + sheet.width * 0.4, sheet.y + sheet.height * 0.4);
  await page.mouse.down();
  await page.mouse.move(sheet.x + sheet.width * 0.45, sheet.y + sheet.height * 0.45);
  await page.mouse.move(sheet.x + sheet.width * 0.5, sheet.y + sheet.height * 0.5);
  await page.mouse.up();
  return [0.395, 0.395, 0.505, 0.505];
}

// The box of the edit, or null where the page has nothing for it.
async function edit(page, how) {
  if (how === "add") {
    return addRectangle(page);
  }
  const found = await page.evaluate(findPath);
  if (found === null) {
    return null;
  }
  for (let i = 0; i < found.depth; i++) {
    await page.mouse.dblclick(found.x, found.y);
  }
  await page.mouse.click(found.x, found.y);
  if (how === "recolour") {
    const field = page.getByRole("group", { name: "Fill" }).getByLabel("Colour").last();
    await field.fill((await field.inputValue()) === "#12d65b" ? "#d6125b" : "#12d65b");
    await field.press("Enter");
  } else {
    await page.keyboard.press(how === "delete" ? "Delete" : "Control+Shift+]");
  }
  return found.box;
}

// What the page says at the end: "Saved", "Nothing to save", or why it would not save.
async function save(page) {
  await page.keyboard.press("Control+s");
  const answer = page.getByRole("dialog").filter({ hasText: /Nothing to save|This appends/ })
    .or(page.getByRole("dialog").filter({ has: page.getByRole("button", { name: "Download as SVG" }) }));
  await answer.waitFor();
  const button = answer.getByRole("button", { name: "Save", exact: true });
  if ((await button.count()) === 0) {
    return (await answer.innerText()).replace(/\s+/g, " ");
  }
  await button.click();
  await page.getByText(/compared it/).waitFor();
  return "Saved";
}

const withoutName = (text) => text.replace(/ data-artwork="[0-9a-f]*"/, "");

async function one(file, how, folder) {
  const work = join(folder, "work.pdf");
  copyFileSync(file, work);
  const art = spawnSync(corvane, ["open", file, "--page", "1", "-o", "-", "--images", "embed", "--quiet"], { maxBuffer: 1 << 30 });
  if (art.status !== 0) {
    return null;
  }
  const server = await serve(work);
  const view = await visit(server.address, { width: 1400, height: 1000 });
  const { page } = view;
  page.setDefaultTimeout(20000);
  try {
    await page.locator(".save-state[data-state=unchanged]").waitFor();
    const seen = {};
    let box = null;
    if (how === "none") {
      const text = withoutName(readFileSync(await downloaded(page), "utf8")).replace(/ data-file="[^"]*"/, "");
      seen.same = text === withoutName(art.stdout.toString()).replace(/ data-file="[^"]*"/, "");
    } else {
      box = await edit(page, how);
      if (box === null) {
        return null;
      }
    }
    const said = await save(page);
    seen.done = how === "none" ? said.startsWith("Nothing to save") : said === "Saved" || said.startsWith("Nothing to save");
    const before = readFileSync(file);
    seen.kept = readFileSync(work).subarray(0, before.length).equals(before) && (how !== "none" || statSync(work).size === before.length);
    seen.sound = checked(work) <= checked(file);
    seen.outside = isSameOutside(drawing(file), drawing(work), box);
    seen.words = words(file) === words(work);
    return { seen, said: view.faults.length > 0 ? `${said}; ${view.faults[0]}` : said };
  } catch (error) {
    return { seen: { done: false }, said: String(error).split("\n")[0] };
  } finally {
    await view.close();
    await server.stop();
  }
}

const { values, positionals } = parseArgs({
  options: { edit: { type: "string", default: "none" }, most: { type: "string", default: "50" } }, allowPositionals: true,
});
const sums = new Map();
const folder = mkdtempSync(join(tmpdir(), "corvane-edits-"));
let opened = 0;
for (const file of spread(positionals.flatMap(filesIn))) {
  if (opened === Number(values.most)) {
    break;
  }
  const answer = await one(file, values.edit, folder);
  opened += answer === null ? 0 : 1;
  for (const [name, isGood] of Object.entries(answer?.seen ?? {})) {
    const sum = sums.get(name) ?? { good: 0, all: 0 };
    sums.set(name, { good: sum.good + (isGood ? 1 : 0), all: sum.all + 1 });
    if (!isGood) {
      console.log(`${name}: ${file}: ${answer.said}`);
    }
  }
}
await closeBrowser();
rmSync(folder, { recursive: true });
console.log(`${values.edit}: ${opened} pages; ${[...sums].map(([name, sum]) => `${name} ${sum.good} of ${sum.all}`).join(", ")}`);
