// An artwork's text: the same characters for all that was not changed.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { readFile, readdir } from "node:fs/promises";
import { join } from "node:path";
import { openParts } from "../help/page.mjs";

let parts;
before(async () => {
  parts = await openParts();
  await parts.page.evaluate(() => {
    globalThis.open = svg => {
      globalThis.art?.remove();
      const host = document.getElementById("canvas");
      const tree = host.shadowRoot ?? host.attachShadow({ mode: "open" });
      globalThis.art = new parts.Artwork(svg, tree);
      globalThis.find = id => art.root.querySelector(`#${id}`);
    };
  });
});
after(() => parts.close());

const head = "<?xml version=\"1.0\"?>\r\n<!-- <g> --><!DOCTYPE svg [<!ENTITY a \">\">]>\n";
const odd = `${head}<svg  xmlns='http://www.w3.org/2000/svg' xmlns:xlink="http://www.w3.org/1999/xlink" onload="a>b"
  viewBox = "0 0 9 9" ><!-- a > b --><style><![CDATA[.a>b{fill:red}]]></style>
  <script>if (1 &lt; 2) window.ran = true</script>\t<g id = 'g1' ><path id="p1" data-a="a &amp; b &#10; >" d='M0 0H9'/>
  <text id="t1" xml:space="preserve">  a &lt; b <tspan id='s1' dx="1 2">two</tspan>  <![CDATA[c & d]]> &#x41;</text><?later on?></g>
  <image id="i1" xlink:href="http://example.com/a.png"/><foreignObject><div xmlns="http://www.w3.org/1999/xhtml"><b/></div></foreignObject>
  <a id="a1" xlink:href="javascript:alert(1)"><rect id="r1" fill="url(http://example.com/#a)" style="fill:url(//b/c)" width="3" height="3" onclick="x()"/></a></svg>
<!-- the end -->\n`;

const changes = [
  ["nothing", odd, () => {}, []],
  ["a value", odd, () => art.set(find("p1"), "d", "M1 1H9"), [["d='M0 0H9'", "d='M1 1H9'"]]],
  ["a value with marks", odd, () => art.set(find("p1"), "d", "'<\">&"), [["d='M0 0H9'", "d='&apos;&lt;\"&gt;&amp;'"]]],
  ["a new attribute", odd, () => art.set(find("p1"), "fill", "#ff0000"), [["'M0 0H9'/>", "'M0 0H9' fill=\"#ff0000\"/>"]]],
  ["a new attribute with a prefix", odd, () => art.set(find("p1"), "xlink:title", "a"), [["'M0 0H9'/>", "'M0 0H9' xlink:title=\"a\"/>"]]],
  ["an attribute less", odd, () => art.set(find("s1"), "dx", null), [["id='s1' dx=\"1 2\"", "id='s1'"]]],
  ["an attribute beside one that is not shown", odd, () => art.set(find("r1"), "width", "4"), [["width=\"3\"", "width=\"4\""]]],
  ["an address over one that is not shown", odd, () => art.set(find("i1"), "xlink:href", "#a"), [["http://example.com/a.png", "#a"]]],
  ["the tag of the root", odd, () => art.set(art.root, "data-a", "1"), [["\"0 0 9 9\" >", "\"0 0 9 9\" data-a=\"1\">"]]],
  ["a text", odd, () => art.setData(find("s1").firstChild, "<3>"), [[">two<", ">&lt;3&gt;<"]]],
  ["an element less", odd, () => art.delete(find("p1")), [[/<path.*?\/>/, ""]]],
  ["an element elsewhere", odd, () => art.insert(find("p1"), art.root, null),
    [[/<path.*?\/>/, ""], [/<\/svg>/, "<path id=\"p1\" data-a=\"a &amp; b &#10; >\" d='M0 0H9'/></svg>"]]],
  ["a child of an empty element", odd, () => art.insert(art.create("title", {}), find("p1"), null), [["'M0 0H9'/>", "'M0 0H9'><title/></path>"]]],
  ["a new element", odd, () => art.insert(art.create("path", { d: "M0 0", "xlink:title": "\"" }), art.root, find("g1")),
    [["<g id", "<path d=\"M0 0\" xlink:title=\"&quot;\"/><g id"]]],
  ["a copy, which has no ids", odd, () => art.insert(art.copy(find("a1")), art.root, null),
    [["</svg>", "<a xlink:href=\"javascript:alert(1)\"><rect fill=\"url(http://example.com/#a)\" style=\"fill:url(//b/c)\" width=\"3\" height=\"3\" onclick=\"x()\"/></a></svg>"]]],
  ["a copy of what was changed", odd, () => { art.set(find("p1"), "d", "M2 2"); art.insert(art.copy(find("p1")), art.root, null); },
    [["M0 0H9", "M2 2"], ["</svg>", "<path data-a=\"a &amp; b &#10; >\" d='M2 2'/></svg>"]]],
  ["a value that went and came back", odd, () => { art.set(find("p1"), "d", "M"); art.set(find("p1"), "d", "M0 0H9"); }, []],
];

for (const [name, svg, change, replaced] of changes) {
  test(`${name}, and undone`, async () => {
    const [changed, undone, redone] = await parts.page.evaluate(([text, work]) => {
      open(text);
      art.run("a step", new Function(`return ${work}`)());
      const texts = [art.text()];
      art.undo();
      texts.push(art.text());
      art.redo();
      return [...texts, art.text()];
    }, [svg, change.toString()]).catch(fault => { throw new Error(fault.message); });
    let expected = svg;
    for (const [from, to] of replaced) expected = expected.replace(from, () => to);
    assert.equal(changed, expected);
    assert.equal(undone, svg);
    assert.equal(redone, expected);
  });
}
