// Makes the page out of its parts: one file that asks for no other, and whose policy names what it holds by its hash.
//
//   node build.mjs FOLDER
//
// FOLDER holds kem.js and kem.wasm; the page becomes FOLDER/page/index.html.
import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { buildSync } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const folder = process.argv[2];
const read = (...names) => readFileSync(join(here, ...names), "utf8");

const { outputFiles } = buildSync({
  entryPoints: [join(here, "src", "app.ts")],
  bundle: true,
  minify: true,
  format: "iife",
  target: "es2021",
  charset: "utf8",
  write: false,
});
const module = readFileSync(join(folder, "kem.js"), "utf8");
const binary = readFileSync(join(folder, "kem.wasm")).toString("base64");
const script = `${module}\nconst kemBinary = "${binary}";\n${outputFiles[0].text}`.replaceAll("</script", "<\\/script");
const style = read("node_modules", "uplot", "dist", "uPlot.min.css") + read("style.css");

const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
const policy = [
  "default-src 'none'",
  `script-src ${hash(script)} 'wasm-unsafe-eval'`,
  `style-src ${hash(style)}`,
  "base-uri 'none'",
  "form-action 'none'",
].join("; ");

const page = read("index.html").replace(/{{(\w+)}}/g, (_, part) => ({ policy, style, script })[part]);
mkdirSync(join(folder, "page"), { recursive: true });
writeFileSync(join(folder, "page", "index.html"), page);
