import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFileSync, writeFileSync } from "node:fs";
import { after, test } from "node:test";
import { encryptedPdf } from "./encrypted.mjs";
import { firstMore, page as pdfPage, pdf, words } from "./pdf.mjs";
import { closeBrowser, command, downloaded, moveFirst, serve, state, visit, workFolder } from "./serve.mjs";

const work = workFolder();
const certified = firstMore(1);
const files = {
  report: readFileSync(work.copy("report.pdf")),
  locked: encryptedPdf("Hello", "", "owner", -64),
  certified: pdf([pdfPage(words("Signed"))], {
    catalog: `/Perms << /DocMDP ${certified} 0 R >>`,
    more: [`<< /Type /Sig /Filter /Adobe.PPKLite /SubFilter /adbe.pkcs7.detached /ByteRange [0 10 20 10] /Contents <00> ` +
      "/Reference [<< /Type /SigRef /TransformMethod /DocMDP /TransformParams << /Type /TransformParams /P 1 /V /1.2 >> >>] >>"],
  }),
  annotated: pdf([pdfPage(words("Text"), { extra: `/Annots [${firstMore(1)} 0 R]` })], {
    more: ["<< /Type /Annot /Subtype /Square /Rect [50 50 90 90] /C [1 0 0] /NM (box) >>"],
  }),
  damaged: pdf([pdfPage(words("Broken"))]).replace(/startxref\n\d+/, "startxref\n7"),
};
for (const [name, bytes] of Object.entries(files)) {
  writeFileSync(work.path(`${name}.pdf`), bytes, "latin1");
}
const server = await serve(work.folder);
const { page, faults } = await visit(server.address);
const dialog = page.getByRole("dialog");
// The browser asks whether a page with work is left for the next test.
page.on("dialog", (question) => void question.accept());

after(async () => {
  await closeBrowser();
  await server.stop();
  work.remove();
});

async function openFile(name) {
  await page.goto(server.address);
  await page.getByRole("button", { name: new RegExp(name) }).click();
  await state(page, "unchanged");
}

// Saves what is on the page as `change` leaves it, and returns once the refusal is shown.
async function refused(change, title) {
  await page.route(/\/(trial|save)(\?|$)/, (route) => route.continue({ postData: change(route.request().postData()) }));
  await moveFirst(page);
  await page.keyboard.press("Control+s");
  await page.getByRole("dialog", { name: title }).waitFor();
  return await dialog.locator(".dialog-buttons button").allTextContents();
}

async function done() {
  await page.keyboard.press("Escape");
  await dialog.waitFor({ state: "detached" });
  await page.unroute(/\/(trial|save)(\?|$)/);
}

const download = "Download as SVG";
const cancel = "Cancel";
const beside = "Open the page beside this";
const force = "Save all the same";

for (const [name, what, change, title, buttons, said] of [
  ["report", "another page meanwhile", (svg) => svg.replace(/data-digest="\w+"/, 'data-digest="0123456789abcdef"'),
    "The page was changed meanwhile", [download, cancel, beside, force], /or was changed since/],
  ["report", "what is not read", (svg) => svg.replace("</svg>", '<switch><g/></switch><foreignObject width="9" height="9"/></svg>'),
    "Something would be lost", [download, cancel, force], /foreignObject/],
  ["report", "no SVG", () => "<svg", "The drawing cannot be read", [download, cancel], /./],
  ["report", "much of the page", (svg) => svg.replace(/<text[^]*?<\/text>/g, ""),
    "Much of the page would be deleted", [download, cancel, force], /would delete/],
  ["report", "a letter that no font has", (svg) => svg.replace(/(>)A (busy|better) /, "$1\u{10FF00} "),
    "This change cannot be made", [download, cancel], /has the letter/],
  ["annotated", "an annotation", (svg) => svg.replaceAll("#ff0000", "#00ff00"),
    "Annotations were changed", [download, cancel, force], /not in the artwork as the file has it/],
  ["certified", "a certified file", (svg) => svg, "The file is certified", [download, cancel, force], /author's signature/],
]) {
  test(`${what}: refused, said in words, with the ways out that there are`, async () => {
    await openFile(name);
    const length = readFileSync(work.path(`${name}.pdf`)).length;
    assert.deepEqual(await refused(change, title), buttons);
    const text = await dialog.textContent();
    assert.match(text, said);
    assert.doesNotMatch(text, /--[a-z]/);
    assert.equal(readFileSync(work.path(`${name}.pdf`)).length, length);
    await done();
    await page.getByText("Not saved", { exact: true }).waitFor();
  });
}

test("saved all the same says what is lost, and then does it", async () => {
  await openFile("certified");
  await refused((svg) => svg, "The file is certified");
  await dialog.getByRole("heading", { name: "If it is saved all the same" }).waitFor();
  await dialog.getByRole("button", { name: force }).click();
  await state(page, "saved");
  await page.getByText("and compared it").waitFor();
  assert.equal(command("log", work.path("certified.pdf")).updates.length, 2);
  await page.unroute(/\/(trial|save)(\?|$)/);
});

test("a damaged file is mended with the save", async () => {
  await openFile("damaged");
  await page.getByText("table of contents is damaged").waitFor();
  assert.deepEqual(await refused((svg) => svg, "The file is damaged"), [download, cancel, "Mend and save"]);
  await dialog.getByRole("button", { name: "Mend and save" }).click();
  await dialog.getByText("It mends").waitFor();
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  assert.equal(command("check", work.path("damaged.pdf")).needsMending ?? false, false);
  await page.unroute(/\/(trial|save)(\?|$)/);
});

test("the owner's password is asked for where only the owner may change the file", async () => {
  await openFile("locked");
  assert.deepEqual(await refused((svg) => svg, "The owner of the file does not permit changes"), [download, cancel, "Give the password"]);
  await dialog.getByRole("button", { name: "Give the password" }).click();
  await page.locator("#password").fill("owner");
  await page.keyboard.press("Enter");
  await dialog.getByText("This appends").waitFor();
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  await page.getByText("and compared it").waitFor();
  await page.unroute(/\/(trial|save)(\?|$)/);
});

test("of two tabs on one page the second to save is told, and can open the page beside, or save all the same", async () => {
  await openFile("report");
  const other = await page.context().newPage();
  await other.goto(page.url());
  await state(other, "unchanged");
  await moveFirst(page);
  await moveFirst(other);
  await page.keyboard.press("Control+s");
  await dialog.getByRole("button", { name: "Save", exact: true }).click();
  await state(page, "saved");
  await page.getByText("and compared it").waitFor();

  await other.evaluate(() => dispatchEvent(new Event("focus")));
  await other.getByText("report.pdf was changed by another program or tab.").waitFor();
  await other.keyboard.press("Control+s");
  const refusal = other.getByRole("dialog", { name: /meanwhile/ });
  await refusal.waitFor();
  const tabs = other.context().waitForEvent("page");
  await refusal.getByRole("button", { name: beside }).click();
  const third = await tabs;
  await state(third, "unchanged");
  assert.equal(await third.evaluate(() => location.hash), await page.evaluate(() => location.hash));
  await third.close();

  const art = readFileSync(await downloaded(other), "utf8");
  assert.match(art, /data-artwork=/);
  await other.keyboard.press("Control+s");
  await refusal.getByRole("button", { name: force }).click();
  await state(other, "saved");
  await other.close();
});

test("a file that another program is saving at the moment is left alone, and saved once it is free", async () => {
  await openFile("report");
  const holder = spawn("python3", ["-c", "import fcntl, sys\nfile = open(sys.argv[1], 'r+')\nfcntl.lockf(file, fcntl.LOCK_EX)\n" +
    "print('held', flush=True)\nsys.stdin.read()", work.path("report.pdf")], { stdio: ["pipe", "pipe", "inherit"] });
  await once(holder.stdout, "data");
  const length = readFileSync(work.path("report.pdf")).length;
  await moveFirst(page);
  await page.keyboard.press("Control+s");
  const save = dialog.getByRole("button", { name: "Save", exact: true });
  const refusal = page.getByRole("dialog", { name: "The file cannot be changed now" });
  await save.or(refusal).first().waitFor();
  if (await save.isVisible()) {
    await save.click();
  }
  await refusal.getByRole("button", { name: cancel }).click();
  await state(page, "failed");
  assert.equal(readFileSync(work.path("report.pdf")).length, length);
  holder.stdin.end();
  await once(holder, "exit");
  await page.keyboard.press("Control+s");
  await save.click();
  await state(page, "saved");
});

test("no script failed and no resource was refused on the way", () => {
  assert.deepEqual(faults, []);
});
