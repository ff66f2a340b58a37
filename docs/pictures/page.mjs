// The pictures of the page in the browser: a word that is changed, the save, the history.
//   node page.mjs WEB-TESTS FOLDER     WEB-TESTS is what the build target web_tests makes
import { copyFileSync, mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";

const [tests, folder] = process.argv.slice(2).map((path) => resolve(path));
const { closeBrowser, example, serve, state, visit } = await import(join(tests, "tests/views/serve.mjs"));
const work = mkdtempSync(join(tmpdir(), "corvane-pictures-"));
for (const name of ["report.pdf", "map.pdf"]) {
  copyFileSync(example(name), join(work, name));
}
const server = await serve(join(work, "report.pdf"), join(work, "map.pdf"));
const { page } = await visit(server.address, { width: 1280, height: 800 });
const take = (name) => page.screenshot({ path: join(folder, `${name}.png`), animations: "disabled" });

// Where a text of the page stands in the window.
async function place(text) {
  return await page.locator(".canvas text, .canvas tspan").filter({ hasText: text }).first().boundingBox();
}

async function openFile(name) {
  await page.getByRole("button", { name: new RegExp(name) }).click();
  await state(page, "unchanged");
  await page.locator(".page-picture canvas").first().waitFor();
}

try {
  await openFile("report.pdf");
  const heading = await place("A busy summer");
  await page.mouse.dblclick(heading.x + heading.width / 2, heading.y + heading.height / 2);
  // The word "busy", behind "A ".
  for (const key of ["Home", "ArrowRight", "ArrowRight", ...Array(4).fill("Shift+ArrowRight"), ..."better"]) {
    await page.keyboard.press(key);
  }
  await page.locator(".canvas text", { hasText: "A better summer for the ferries" }).waitFor();
  await take("page-editing");

  await page.keyboard.press("Escape");
  await page.keyboard.press("Control+s");
  await page.getByText("This appends").waitFor();
  await take("page-saving");
  await page.getByRole("dialog").getByRole("button", { name: "Save", exact: true }).click();
  await page.getByText("and compared it").waitFor();

  await page.getByRole("button", { name: "History" }).click();
  await page.waitForFunction(() => document.querySelector(".after img")?.naturalWidth > 0);
  await page.getByRole("button", { name: "Side by side" }).click();
  await take("page-history");
} finally {
  await closeBrowser();
  await server.stop();
  rmSync(work, { recursive: true, force: true });
}
