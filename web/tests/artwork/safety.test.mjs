// What an artwork says can neither run nor reach anything, and stays in the text.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { openParts } from "../help/page.mjs";

let parts;
before(async () => { parts = await openParts(); });
after(() => parts.close());

const away = "http://127.0.0.1:9/away";
const pixel = "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==";
const cases = [
  ["a script", `<script>globalThis.ran = 1</script><script href="${away}"/>`, "script"],
  ["an event", "<path id=\"x\" onclick=\"globalThis.ran = 1\" onload=\"globalThis.ran = 1\" d=\"M0 0H9V9Z\"/>", "[onclick],[onload]"],
  ["an element of another language", `<foreignObject><iframe xmlns="http://www.w3.org/1999/xhtml" src="${away}"/></foreignObject>`, "foreignObject,iframe"],
  ["a form without foreignObject", `<form xmlns="http://www.w3.org/1999/xhtml" action="${away}"><input autofocus=""/></form>`, "form,input"],
  ["an animation of an address", `<a href="#a"><set attributeName="href" to="javascript:ran=1"/><path id="x" d="M0 0H9V9Z"/></a>`, "set,[href]"],
  ["a picture from elsewhere", `<image href="${away}" xlink:href="${away}" width="9" height="9"/><feImage href="${away}"/>`, "[href]"],
  ["something used from elsewhere", `<use href="${away}#a"/><path fill="url(${away}#a)" filter='url("${away}")' d="M0 0H9"/>`, "[href],[fill],[filter]"],
  ["a style from elsewhere", `<path style="fill:url(${away}#a)" d="M0 0H9"/><path style="fill:u\\72l(${away})" d="M0 0H9"/>`, "[style]"],
  ["a style sheet from elsewhere", `<style>@import "${away}"; @font-face{font-family:A;src:url(${away})} path{mask:url(${away}); background:image-set("${away}" 1x)}</style><text font-family="A">a</text><path d="M0 0H9"/>`, "style"],
  ["a page that asks for the keyboard", "<path id=\"x\" tabindex=\"0\" autofocus=\"\" d=\"M0 0H9\"/>", "[tabindex],[autofocus]"],
];

for (const [name, markup, shown] of cases) {
  test(name, async () => {
    const svg = `<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" viewBox="0 0 9 9">${markup}</svg>`;
    const found = await parts.page.evaluate(async ([text, selector]) => {
      const host = document.getElementById("canvas");
      const tree = host.shadowRoot ?? host.attachShadow({ mode: "open" });
      const art = new parts.Artwork(text, tree);
      tree.querySelector("#x")?.dispatchEvent(new MouseEvent("click", { bubbles: true, composed: true }));
      await new Promise(resolve => setTimeout(resolve, 60));
      const result = { text: art.text(), shown: tree.querySelectorAll(selector).length, ran: "ran" in globalThis };
      art.remove();
      return result;
    }, [svg, shown]);
    assert.deepEqual(found, { text: svg, shown: 0, ran: false });
    assert.deepEqual(parts.requests, []);
    assert.deepEqual(parts.faults, []);
  });
}

test("pictures and paints of the artwork itself stay, and its fonts go with it", async () => {
  const svg = `<svg xmlns="http://www.w3.org/2000/svg"><style>@font-face{font-family:Zz;src:url(data:font/otf;base64,T1RUTw==)} .a{fill:red}</style>
    <image href="${pixel}" width="1" height="1"/><path class="a" style="stroke:url(#g)" fill="url(#g)" d="M0 0"/></svg>`;
  const found = await parts.page.evaluate(text => {
    const fonts = () => document.adoptedStyleSheets.flatMap(sheet => [...sheet.cssRules]).map(rule => rule.cssText);
    const host = document.getElementById("canvas");
    const art = new parts.Artwork(text, host.shadowRoot);
    const path = art.root.querySelector("path");
    const result = [fonts().length, art.root.querySelector("image").hasAttribute("href"), path.getAttribute("fill"),
      path.getAttribute("style"), getComputedStyle(path).fill];
    art.remove();
    return [...result, fonts().length];
  }, svg);
  assert.deepEqual(found, [1, true, "url(#g)", "stroke:url(#g)", "rgb(255, 0, 0)", 0]);
});
