import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { load } from "./load.mjs";
import { example } from "./serve.mjs";

const words = await load("views/words.ts");
const { refusal } = await load("views/refusals.ts");
const { namedPage } = await load("views/elsewhere.ts");
const { omission } = await load("views/omissions.ts");

test("what the program says loses the advice for a command line, and nothing else", () => {
  for (const [said, shown] of [
    ["cancelled", "Cancelled."],
    ["saving would lose what the artwork does not hold: 2 images; to save all the same, say --force",
      "Saving would lose what the artwork does not hold: 2 images."],
    ["page 3 is not the page that the artwork was opened from (page 3 of a.pdf), or was changed since; open it again, or " +
      "replace it with --force",
    "Page 3 is not the page that the artwork was opened from (page 3 of a.pdf), or was changed since; open it again."],
    ["page 1 was saved from another artwork since this one was opened, and saving this one would undo that; open the page " +
      "again, or undo it with --force",
    "Page 1 was saved from another artwork since this one was opened, and saving this one would undo that; open the page again."],
    ["letters that are drawings were changed one by one; change the group as a whole, or say --force",
      "Letters that are drawings were changed one by one; change the group as a whole."],
    ["the file is encrypted and needs a password; give it with --password-file", "The file is encrypted and needs a password."],
    ["the file is damaged and was mended for reading only; to save into it, say --mend: what is appended then mends it, and " +
      "every old byte stays", "The file is damaged and was mended for reading only."],
    ["the layer \"A -- B\" was hidden; say it", "The layer \"A -- B\" was hidden; say it."],
  ]) {
    assert.equal(words.plain(said), shown);
  }
});

test("numbers, sizes and lists read as people write them", () => {
  for (const [shown, wanted] of [
    [words.size(1), "1 byte"], [words.size(2899), "2,899 bytes"], [words.size(28_870), "28.9 kB"], [words.size(3_134_187), "3.1 MB"],
    [words.listed([]), ""], [words.listed(["a"]), "a"], [words.listed(["a", "b", "c"]), "a, b and c"],
    [words.pages([]), "no page"], [words.pages([3]), "page 3"], [words.pages([1, 2]), "pages 1 and 2"],
    [words.pages([1, 2, 3, 4, 5, 6, 7]), "7 pages: 1, 2, 3, 4, 5, 6 ..."], [words.date(null), "date not known"],
  ]) {
    assert.equal(shown, wanted);
  }
});

test("each refusal has its own ways out", () => {
  const ways = (code, sentence = "no") => {
    const { canForce, canMend, isConflict, wantsPassword } = refusal({ code, sentence });
    return [canForce && "force", canMend && "mend", isConflict && "beside", wantsPassword && "password"].filter(Boolean).join(" ");
  };
  const needs = "the file is encrypted and needs a password; give it with --password-file";
  for (const [code, sentence, wanted] of [
    [21, "", "force beside"], [29, "", "force beside"], [24, "", "beside"], [26, "", "force"], [30, "", "force"],
    [33, "", "force"], [34, "", "force"], [22, "", "mend"], [32, "", "password"], [7, needs, "password"],
    [7, "the file is encrypted by a method that is not supported (X)", ""], [19, "", ""], [27, "", ""], [31, "", ""],
    [31, "letters were changed one by one; change the group as a whole, or say --force", "force"], [6, "", ""], [52, "", ""],
  ]) {
    assert.equal(ways(code, sentence), wanted, `code ${code}`);
  }
});

test("an address names a file and a page, or nothing", () => {
  for (const [hash, named] of [
    ["#4/12", { file: "4", page: 12 }], ["#4", { file: "4", page: 1 }], ["", null], ["#", null], ["#4/0", null], ["#4/x", null],
    ["#4/1/2", null], ["#4/9999999999", null],
  ]) {
    assert.deepEqual(namedPage(hash), named, hash);
  }
});

test("each kind that the program counts has words of its own", () => {
  const source = readFileSync(example("../app/artwork/provenance.cpp"), "utf8");
  const table = /kinds = \{\{([^]*?)\}\};/.exec(source)[1];
  const names = [...table.matchAll(/^ *\{"(\w+)",/gm)].map((row) => row[1]);
  assert.ok(names.length > 15);
  for (const name of names) {
    assert.doesNotMatch(omission(name, 2).what, /does not know/, name);
    assert.notEqual(omission(name, 1).what.replace("1 ", ""), omission(name, 2).what.replace("2 ", ""), name);
  }
  assert.match(omission("later", 1).what, /does not know \(later\)/);
});
