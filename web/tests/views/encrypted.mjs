// A PDF that wants a password, enciphered as PDF 1.3 does it: RC4 with keys of 40 bits (PDF Reference, 3.5).

import { createHash } from "node:crypto";
import { page, pdf, words } from "./pdf.mjs";

const padding = Buffer.from("28bf4e5e4e758a4164004e56fffa01082e2e00b6d0683e802f0ca9fe6453697a", "hex");
const identity = Buffer.from("00112233445566778899aabbccddeeff", "hex");

function md5(...parts) {
  const hash = createHash("md5");
  parts.forEach((part) => hash.update(part));
  return hash.digest();
}

function rc4(key, data) {
  const state = Array.from({ length: 256 }, (_, index) => index);
  for (let i = 0, j = 0; i < 256; i++) {
    j = (j + state[i] + key[i % key.length]) & 255;
    [state[i], state[j]] = [state[j], state[i]];
  }
  let i = 0;
  let j = 0;
  return Buffer.from(data).map((byte) => {
    i = (i + 1) & 255;
    j = (j + state[i]) & 255;
    [state[i], state[j]] = [state[j], state[i]];
    return byte ^ state[(state[i] + state[j]) & 255];
  });
}

const padded = (password) => Buffer.concat([Buffer.from(password, "latin1"), padding]).subarray(0, 32);

// One page that shows `text`. `permissions` as in the dictionary: -4 permits all, -64 nothing.
export function encryptedPdf(text, user, owner, permissions = -4) {
  const bits = Buffer.alloc(4);
  bits.writeInt32LE(permissions);
  const ownerEntry = rc4(md5(padded(owner)).subarray(0, 5), padded(user));
  const key = md5(padded(user), ownerEntry, bits, identity).subarray(0, 5);
  const contentNumber = 5;
  const content = rc4(md5(key, Buffer.from([contentNumber, 0, 0, 0, 0])).subarray(0, 10), words(text));
  const dictionary = `<< /Filter /Standard /V 1 /R 2 /P ${permissions} /O <${ownerEntry.toString("hex")}> ` +
    `/U <${rc4(key, padding).toString("hex")}> >>`;
  const whole = pdf([page(content.toString("latin1"))], { more: [dictionary] });
  return whole.replace("/Root 1 0 R", `/Root 1 0 R /Encrypt 6 0 R /ID [<${identity.toString("hex")}> <${identity.toString("hex")}>]`);
}
