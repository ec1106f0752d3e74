// Renders the pages listed in views.json with pdf.js, one after the other, and posts each result: a line of JSON, then the
// canvas' pixels as RGBA.
import * as pdfjs from "./pdfjs/legacy/build/pdf.min.mjs";

const home = new URL("pdfjs/", document.baseURI).href;
pdfjs.GlobalWorkerOptions.workerSrc = `${home}legacy/build/pdf.worker.min.mjs`;
const resources = {
  cMapUrl: `${home}cmaps/`,
  standardFontDataUrl: `${home}standard_fonts/`,
};

const post = (path, body) => fetch(path, { method: "POST", body });

async function show(view) {
  const loading = pdfjs.getDocument({ url: view.file, ...resources });
  const file = await loading.promise;
  const page = await file.getPage(1);
  const viewport = page.getViewport({ scale: view.resolution / 72 });
  const layers = await file.getOptionalContentConfig();
  const names = [];
  for (const [id, group] of Object.entries(layers.getGroups() ?? {})) {
    names.push(group.name);
    if (view.hidden.includes(group.name)) {
      layers.setVisibility(id, false);
    }
  }

  const canvas = document.createElement("canvas");
  canvas.width = Math.ceil(viewport.width);
  canvas.height = Math.ceil(viewport.height);
  const canvasContext = canvas.getContext("2d", { alpha: false, willReadFrequently: true });
  const optionalContentConfigPromise = Promise.resolve(layers);
  await page.render({ canvasContext, viewport, optionalContentConfigPromise }).promise;

  const text = await page.getTextContent({ disableNormalization: true });
  const notes = await page.getAnnotations();
  const seen = {
    size: [canvas.width, canvas.height],
    layers: names,
    texts: text.items.map((item) => ({ text: item.str, origin: item.transform.slice(4) })),
    notes: notes.map((note) => [
      note.subtype,
      note.url ?? note.unsafeUrl ?? null,
      note.contentsObj?.str ?? "",
      note.rect.map(Math.round),
    ]),
  };
  const { data } = canvasContext.getImageData(0, 0, canvas.width, canvas.height);
  await loading.destroy();
  return new Blob([JSON.stringify(seen), "\n", data]);
}

try {
  const views = await (await fetch("views.json")).json();
  for (const [index, view] of views.entries()) {
    await post(`seen/${index}`, await show(view));
  }
} catch (error) {
  await post("failure", `${error}\n${error.stack ?? ""}`);
}
