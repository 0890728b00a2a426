// The published gallery in headless Chromium with 20, 500 and 2,000 pictures:
//
//   node bench/gallery_bench.js [COUNTS...]      (make bench runs it)
//
// For each count it publishes one gallery with pwext, then measures
// - the time from navigation to the first frame showing a picture with its
//   caption, against the floor: the same page with its scripts removed,
//   where the browser shows the first picture at the first frame after it
//   has loaded it;
// - dragging the slider from end to end: the time between frames, and the
//   time the script's layout takes per frame.
// Times are medians of nine page loads. SLIDEWAVE_JS=FILE measures that
// script instead of the published one (to try a change without a rebuild).
// Uses the browser tests' Playwright (tests/browser/node_modules) and
// Debian's /usr/bin/chromium.
'use strict';

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const browserTests = path.join(__dirname, '..', 'tests', 'browser');
const { chromium } = require(path.join(browserTests, 'node_modules', 'playwright-core'));
const { publishSite, writePictures } = require(path.join(browserTests, 'site'));
const { staticServer } = require(path.join(browserTests, 'servers'));

const LOADS = 9;
const work = fs.mkdtempSync(path.join(os.tmpdir(), 'slidewave-bench-'));

// count pictures: the eight sample scenes, copied under further names.
function pictures(count) {
  const source = path.join(work, `pictures-${count}`);
  const scenes = writePictures(source, Math.min(count, 8));
  const all = [...scenes];
  for (let i = scenes.length; i < count; i++) {
    const copy = path.join(source, `copy ${i + 1}.png`);
    fs.copyFileSync(scenes[i % scenes.length].path, copy);
    all.push({ path: copy });
  }
  return all;
}

// Records, in the page, the first frame after the first gallery picture has
// loaded (the floor) and the first frame in which the gallery shows a
// picture with its caption: both at a frame, which is when either can be
// seen.
const recorder = () => {
  window.bench = {};
  let loaded = false;
  document.addEventListener('load', (e) => {
    if (e.target.tagName !== 'IMG' || loaded) return;
    loaded = true;
    requestAnimationFrame(() => { window.bench.loaded = performance.now(); });
  }, true);
  const watch = () => {
    const root = document.querySelector('[id="slidewave"]');
    const g = root && root.gallery, item = g && g.items[0];
    const captions = root && root.querySelector('[id="captions"]');  // parsed after the pictures
    if (item && item.element.style.display === 'block' && captions && captions.textContent) {
      window.bench.shown = performance.now();
    } else {
      requestAnimationFrame(watch);
    }
  };
  requestAnimationFrame(watch);
};

function median(values) {
  const sorted = [...values].sort((a, b) => a - b);
  return sorted[Math.floor(sorted.length / 2)];
}

async function firstPicture(browser, url, field) {
  const page = await browser.newPage({ viewport: { width: 1000, height: 700 } });
  await page.addInitScript(recorder);
  await page.goto(url);
  const time = await page.waitForFunction((f) => window.bench[f], field, { timeout: 120000 }).then((h) => h.jsonValue());
  await page.close();
  return time;
}

// The page without scripts and the gallery are loaded by turns, so that a
// change in what else the machine does weighs on both alike: single loads
// of either vary by a third with 2,000 pictures.
async function firstPictures(browser, url) {
  const floor = [], shown = [];
  for (let i = 0; i < LOADS; i++) {
    floor.push(await firstPicture(browser, url + 'floor.html', 'loaded'));
    shown.push(await firstPicture(browser, url + 'index.html', 'shown'));
  }
  return { floor: median(floor), shown: median(shown) };
}

async function drag(browser, url) {
  const page = await browser.newPage({ viewport: { width: 1000, height: 700 } });
  await page.goto(url);
  await page.waitForFunction(() => {
    const root = document.querySelector('[id="slidewave"]');
    const g = root.gallery;  // (scripts before "settled" started with every picture)
    return g && ('settled' in g ? g.settled : g.started);
  }, null, { timeout: 300000 });
  await page.evaluate(() => {
    const g = document.querySelector('[id="slidewave"]').gallery, layout = g.layout;
    window.costs = [];
    window.frameTimes = [];
    g.layout = function () {
      const t = performance.now();
      layout.call(this);
      window.costs.push(performance.now() - t);
    };
    let last = 0;
    const tick = (now) => {
      if (last) window.frameTimes.push(now - last);
      last = now;
      if (!window.benchDone) requestAnimationFrame(tick);
    };
    requestAnimationFrame(tick);
  });
  const bar = await page.locator('[id="scrollbar"]').boundingBox();
  const y = bar.y + bar.height / 2;
  await page.mouse.move(bar.x + 1, y);
  await page.mouse.down();
  for (let i = 0; i <= 120; i++) {
    await page.mouse.move(bar.x + 1 + (bar.width - 2) * i / 120, y);
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => done())));
  }
  await page.mouse.up();
  const result = await page.evaluate(() => {
    window.benchDone = true;
    return { frames: window.frameTimes, costs: window.costs };
  });
  await page.close();
  if (!result.costs.length) throw new Error(`dragging laid nothing out (${result.frames.length} frames)`);
  return { frame: median(result.frames), layout: median(result.costs) };
}

async function main() {
  const counts = process.argv.slice(2).map(Number).filter(Boolean);
  const browser = await chromium.launch({
    executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking'],
  });
  const rows = [];
  try {
    for (const count of counts.length ? counts : [20, 500, 2000]) {
      const site = publishSite(path.join(work, `site-${count}`),
        [{ left: 40, top: 30, width: 760, height: 420, pictures: pictures(count) }]);
      if (process.env.SLIDEWAVE_JS) fs.copyFileSync(process.env.SLIDEWAVE_JS, path.join(site, 'slidewave.js'));
      const page = fs.readFileSync(path.join(site, 'index.html'), 'latin1');
      fs.writeFileSync(path.join(site, 'floor.html'), page.replace(/<script\b[^]*?<\/script>/gi, ''), 'latin1');
      const server = await staticServer(site);
      try {
        const first = await firstPictures(browser, server.url);
        const dragging = await drag(browser, server.url + 'index.html');
        rows.push({ count, ...first, ...dragging });
      } finally {
        await server.close();
      }
    }
  } finally {
    await browser.close();
    fs.rmSync(work, { recursive: true, force: true });
  }
  console.log('gallery in Chromium     first picture   floor (no script)   ratio   frame while dragging   layout per frame');
  for (const r of rows) {
    console.log(`${String(r.count).padStart(5)} pictures        ${r.shown.toFixed(0).padStart(6)} ms   ` +
      `${r.floor.toFixed(0).padStart(10)} ms       ${(r.shown / r.floor).toFixed(2).padStart(5)}x   ` +
      `${r.frame.toFixed(1).padStart(12)} ms       ${(r.layout * 1000).toFixed(0).padStart(8)} us`);
  }
}

main().catch((e) => {
  console.error(`gallery bench: ${e.message}`);
  process.exit(1);
});
