// An editor over a small page, and what tests do with it.
import { after, before } from "node:test";
import { openParts } from "./page.mjs";

// One unit of the page is one pixel of the stage: the tests set the zoom to 1, with the page's corner at `corner`.
export const corner = { x: 150, y: 100 };

export function withEditor(viewport) {
  const found = {};
  before(async () => {
    Object.assign(found, await openParts(viewport));
    const { page } = found;
    await page.evaluate(() => {
      globalThis.editor = parts.makeEditor();
      globalThis.told = { messages: [], limits: [], words: "" };
      editor.addEventListener("message", event => told.messages.push(event.detail));
      editor.addEventListener("selection", event => { told.words = event.detail.words; told.limits = event.detail.limits.map(limit => limit.sentence); });
    });
    found.frames = () => page.evaluate(() => new Promise(resolve => requestAnimationFrame(() => requestAnimationFrame(resolve))));
    found.show = async body => {
      const svg = body.startsWith("<?xml") ? body : page600(body);
      await page.evaluate(text => editor.show(text), svg);
      await page.locator(".artwork-stage").focus();
      await page.keyboard.press("1");
      await found.toCorner();
      return svg;
    };
    // Pans such that the page's corner is where the tests expect it.
    found.toCorner = async () => {
      await page.mouse.move(640, 400);
      for (let turn = 0; turn < 50; ++turn) {
        await found.frames();
        const [paper, stage] = await page.evaluate(() => [".artwork-paper", ".artwork-stage"].map(name => {
          const { x, y } = document.querySelector(name).getBoundingClientRect();
          return { x, y };
        }));
        found.origin = { x: stage.x + corner.x, y: stage.y + corner.y };
        const away = { x: paper.x - found.origin.x, y: paper.y - found.origin.y };
        if (Math.abs(away.x) < 1 && Math.abs(away.y) < 1) return;
        await page.mouse.wheel(away.x, away.y);
      }
      throw new Error("the page does not come to its corner");
    };
    found.at = (x, y) => [found.origin.x + x, found.origin.y + y];
    found.click = async (x, y, options) => { await page.mouse.click(...found.at(x, y), options); await found.frames(); };
    found.drag = async (from, to, keys = []) => {
      await page.mouse.move(...found.at(...from));
      await page.mouse.down();
      for (const key of keys) await page.keyboard.down(key);
      await page.mouse.move(...found.at((from[0] + to[0]) / 2, (from[1] + to[1]) / 2));
      await page.mouse.move(...found.at(...to));
      await page.mouse.up();
      for (const key of keys) await page.keyboard.up(key);
      await found.frames();
    };
    found.press = async (...keys) => { for (const key of keys) await page.keyboard.press(key); await found.frames(); };
    found.ids = () => page.evaluate(() => editor.selection.map(element => element.id || element.localName));
    found.text = () => page.evaluate(() => editor.text());
    found.value = (id, name) => page.evaluate(([key, attribute]) => editor.root.querySelector(`#${key}`)?.getAttribute(attribute) ?? null, [id, name]);
    found.order = id => page.evaluate(key => [...editor.root.querySelector(`#${key}`).children].map(child => child.id || child.localName), id);
  });
  after(() => found.close());
  return found;
}

export function page600(body) {
  return `<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape" version="1.1" width="600pt" height="500pt" viewBox="0 0 600 500" data-producer="corvane">
 <g id="layer1" inkscape:groupmode="layer">${body}</g>
</svg>
`;
}
