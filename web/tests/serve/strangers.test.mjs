// What pages of other sites get from the server, in the browser of a person who has its cookie.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createServer } from "node:http";
import { after, test } from "node:test";
import { closeBrowser, serve, visit, workFolder } from "../views/serve.mjs";

const work = workFolder();
const file = work.copy("two-pages.pdf", "a.pdf");
const before = readFileSync(file);
const server = await serve(file);
const home = new URL(server.address).origin;
const port = new URL(server.address).port;
const { page, context } = await visit(server.address);
await page.locator(".canvas").waitFor();
// The strangers' own server: the same host with another port is the same site, a name is another.
const stranger = createServer((_, response) => {
  response.writeHead(200, { "content-type": "text/html" }).end("<!doctype html><title>Stranger</title><body>");
});
await new Promise((resolve) => stranger.listen(0, "127.0.0.1", resolve));

after(async () => {
  await closeBrowser();
  await server.stop();
  stranger.close();
  work.remove();
});

// Runs in the stranger's page; what it could learn, and the statuses that it could see.
async function attempts(address) {
  const outcome = {};
  const tell = async (name, work) => { outcome[name] = await work().catch(() => "refused"); };
  const svg = "<svg xmlns='http://www.w3.org/2000/svg'/>";
  for (const path of ["/api/files", "/api/files/1", "/", "/app.js", "/api/files/1/pages/1/picture"]) {
    await tell(`read ${path}`, async () => (await fetch(address + path, { credentials: "include" })).text());
    await tell(`hidden ${path}`, async () => (await fetch(address + path, { credentials: "include", mode: "no-cors" })).type);
  }
  for (const path of ["/api/files/1/revert", "/api/files/1/pages/1/save?force=yes", "/api/alive"]) {
    await tell(`post ${path}`, async () => (await fetch(address + path, {
      method: "POST", body: svg, credentials: "include", mode: "no-cors", headers: { "Content-Type": "text/plain" } })).type);
  }
  const element = (name, tag, set) => tell(name, () => new Promise((resolve, reject) => {
    const made = document.createElement(tag);
    made.onload = () => resolve("loaded");
    made.onerror = () => reject(new Error("not loaded"));
    Object.assign(made, set);
    document.body.append(made);
  }));
  await element("picture", "img", { src: `${address}/api/files/1/pages/1/picture` });
  await element("script", "script", { src: `${address}/app.js` });
  await tell("frame", async () => {
    const frame = document.createElement("iframe");
    frame.src = `${address}/`;
    const loaded = new Promise((resolve) => { frame.onload = resolve; });
    document.body.append(frame);
    await loaded;
    return frame.contentDocument?.body.innerText ?? "refused";
  });
  return outcome;
}

for (const [name, host] of [["another site", "localhost"], ["the same host with another port", "127.0.0.1"]]) {
  test(`a page of ${name} gets nothing`, async () => {
    const other = await context.newPage();
    await other.goto(`http://${host}:${stranger.address().port}/`);
    const statuses = [];
    other.on("response", (response) => {
      if (response.url().startsWith(home)) {
        statuses.push([response.status(), response.url()]);
      }
    });
    const outcome = await other.evaluate(attempts, home);
    for (const [attempt, result] of Object.entries(outcome)) {
      assert.ok(result === "refused" || result === "opaque", `${attempt}: ${result}`);
    }
    assert.ok(statuses.length > 0);
    for (const [status, url] of statuses) {
      assert.ok(status === 401 || status === 403, `${status} ${url}`);
    }
    const opened = await Promise.all([
      context.waitForEvent("page"),
      other.evaluate((address) => { window.opened = window.open(address); }, `${home}/`),
    ]);
    await opened[0].waitForLoadState();
    assert.equal(await other.evaluate(() => { try { return window.opened.document.title; } catch { return "refused"; } }) || "refused", "refused");
    await opened[0].close();
    await other.close();
    assert.deepEqual(readFileSync(file), before);
  });
}

test("a name that resolves to this machine gets nothing", async () => {
  const other = await context.newPage();
  for (const host of ["corvane.localhost", "127.0.0.2"]) {
    const response = await other.goto(`http://${host}:${port}/`).catch(() => null);
    assert.ok(response === null || response.status() === 403, `${host}: ${response?.status()}`);
  }
  await other.close();
});

test("no script reads the cookie, and the address in the bar holds no secret", async () => {
  assert.equal(await page.evaluate(() => document.cookie), "");
  assert.ok(!page.url().includes("secret"));
  const [cookie] = (await context.cookies(home)).filter((one) => one.name === `corvane-${port}`);
  assert.deepEqual([cookie.httpOnly, cookie.sameSite, cookie.path], [true, "Strict", "/"]);
});

test("a browser without the secret is told what to do", async () => {
  const { page: fresh, close } = await visit(`${home}/`);
  assert.match(await fresh.locator("body").innerText(), /open the address that corvane serve printed/);
  await fresh.goto(`http://localhost:${stranger.address().port}/`);
  // A link in another site's page, as a terminal in the browser shows it.
  await fresh.evaluate((address) => { document.body.innerHTML = `<a href="${address}">page</a>`; }, server.address);
  await fresh.getByRole("link").click();
  await fresh.locator(".canvas").waitFor();
  await close();
});
