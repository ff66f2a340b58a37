// PDF files for the tests, written object by object.

import { writeFileSync } from "node:fs";

// A page: what it shows, its size, and what else its dictionary and its resources say.
export function page(content, { width = 300, height = 400, extra = "", resources = "" } = {}) {
  return { content, width, height, extra, resources };
}

// Pages as the text of a file; `more` are objects behind them, whose numbers `firstMore` begins.
export function pdf(pages, { catalog = "", more = [] } = {}) {
  const first = 4;
  const objects = [
    `<< /Type /Catalog /Pages 2 0 R ${catalog} >>`,
    `<< /Type /Pages /Count ${pages.length} /Kids [${pages.map((_, index) => `${first + 2 * index} 0 R`).join(" ")}] >>`,
    "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
  ];
  pages.forEach(({ content, width, height, extra, resources }, index) => {
    objects.push(`<< /Type /Page /Parent 2 0 R /MediaBox [0 0 ${width} ${height}] /Contents ${first + 2 * index + 1} 0 R ` +
      `/Resources << /Font << /F1 3 0 R >> ${resources} >> ${extra} >>`);
    objects.push(`<< /Length ${content.length} >>\nstream\n${content}\nendstream`);
  });
  objects.push(...more);
  let text = "%PDF-1.7\n";
  const offsets = objects.map((object, index) => {
    const offset = text.length;
    text += `${index + 1} 0 obj\n${object}\nendobj\n`;
    return offset;
  });
  const table = text.length;
  text += `xref\n0 ${objects.length + 1}\n0000000000 65535 f \n`;
  text += offsets.map((offset) => `${String(offset).padStart(10, "0")} 00000 n \n`).join("");
  return `${text}trailer\n<< /Size ${objects.length + 1} /Root 1 0 R >>\nstartxref\n${table}\n%%EOF\n`;
}

export function firstMore(pageCount) {
  return 4 + 2 * pageCount;
}

export function words(text, x = 40, y = 300, size = 20) {
  return `BT /F1 ${size} Tf ${x} ${y} Td (${text}) Tj ET`;
}

// As many pages as are asked for, each with its number, upright and across in turn.
export function manyPages(path, count) {
  const pages = Array.from({ length: count }, (_, index) => index % 7 === 3
    ? page(`.9 .95 1 rg 20 20 360 260 re f 0 g ${words(`Page ${index + 1}`, 60, 140, 40)}`, { width: 400, height: 300 })
    : page(`.95 .9 .85 rg 20 20 260 360 re f 0 g ${words(`Page ${index + 1}`, 60, 200, 40)}`));
  writeFileSync(path, pdf(pages), "latin1");
}
