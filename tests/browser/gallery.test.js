// The published Slidewave gallery in headless Chromium: loading, layout,
// captions, keyboard, slider, wheel, failed pictures and reflections with
// and without PHP on the server.
'use strict';

const { test, before, after } = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { chromium } = require('playwright-core');
const { publishSite, writePictures, repo } = require('./site');
const { staticServer, phpServer } = require('./servers');

const work = fs.mkdtempSync(path.join(os.tmpdir(), 'slidewave-browser-'));
const screenshots = path.join(repo, 'build', 'screenshots');
let browser;

before(async () => {
  browser = await chromium.launch({
    executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
    headless: true,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
});

after(async () => {
  if (browser) await browser.close();
  fs.rmSync(work, { recursive: true, force: true });
});

// Serves the site, opens it and waits until every gallery lists every
// picture there is.
async function open(site, { php = false, reducedMotion = 'no-preference', width = 1000, height = 700 } = {}) {
  const server = php ? await phpServer(site) : await staticServer(site);
  const page = await browser.newPage({ viewport: { width, height }, reducedMotion });
  const problems = [];
  page.on('pageerror', (e) => problems.push(e.message));
  await page.goto(server.url + 'index.html');
  await page.waitForFunction(() => {
    const roots = document.querySelectorAll('[id="slidewave"]');
    return roots.length > 0 && [...roots].every((r) => r.gallery && r.gallery.settled);
  }, null, { timeout: 15000 });
  return { page, problems, close: async () => { await page.close(); await server.close(); } };
}

// What a visitor sees of gallery n: the displayed pictures with their boxes,
// the caption, the slider's place and the parts' visibility.
function state(page, n = 0) {
  return page.evaluate((n) => {
    const root = document.querySelectorAll('[id="slidewave"]')[n];
    const part = (id) => root.querySelector(`[id="${id}"]`);
    const box = root.getBoundingClientRect();
    const shown = [...part('images').children]
      .filter((e) => (e.tagName === 'IMG' || e.tagName === 'CANVAS') && getComputedStyle(e).display !== 'none')
      .map((e) => {
        const r = e.getBoundingClientRect();
        return {
          tag: e.tagName, alt: e.alt || e.getAttribute('aria-label'), src: e.getAttribute('src'),
          natural: e.tagName === 'IMG' ? [e.naturalWidth, e.naturalHeight] : [e.width, e.height],
          x: r.left - box.left, y: r.top - box.top, w: r.width, h: r.height, z: Number(e.style.zIndex),
        };
      });
    const slider = part('slider').getBoundingClientRect();
    const bar = part('scrollbar').getBoundingClientRect();
    return {
      width: box.width, height: box.height, shown,
      caption: part('captions').textContent,
      live: part('captions').getAttribute('aria-live'),
      images: getComputedStyle(part('images')).visibility,
      scrollbar: getComputedStyle(part('scrollbar')).visibility,
      sliderAt: bar.width ? (slider.left + slider.width / 2 - bar.left) / bar.width : 0,
      focusable: root.tabIndex >= 0, label: root.getAttribute('aria-label'),
    };
  }, n);
}

// Opens the site, runs the checks and always closes the page and server.
async function withGallery(site, ...rest) {
  const check = rest.pop();
  const g = await open(site, ...rest);
  try {
    await check(g);
  } finally {
    await g.close();
  }
}

const current = (s) => s.shown.reduce((a, b) => (b.z > a.z ? b : a));
// Waits until every gallery has finished gliding (the script keeps its state
// on the gallery element).
const settle = (page) => page.waitForFunction(
  () => [...document.querySelectorAll('[id="slidewave"]')].every((r) => r.gallery && !r.gallery.frame),
  null, { timeout: 5000, polling: 50 });

const pictures = (name, count) => writePictures(path.join(work, `${name}-pictures`), count);

function eightPictureSite(name, options = {}) {
  const images = pictures(name, options.count);
  const site = publishSite(path.join(work, name),
    [{ left: 40, top: 30, width: 760, height: 420, pictures: images, reflection: !!options.reflection }]);
  return { site, images };
}

test('the gallery loads, lays out the strip and shows the first caption', async () => {
  const { site, images } = eightPictureSite('plain');
  await withGallery(site, async (g) => {
  const s = await state(g.page);
  assert.equal(s.images, 'visible');
  assert.equal(s.scrollbar, 'visible');
  assert.equal(s.caption, images[0].title);
  assert.equal(s.live, 'polite');
  assert.ok(s.focusable, 'the gallery takes focus');
  assert.equal(s.label, 'Gallery, picture 1 of 8');
  assert.ok(s.shown.length >= 5, `pictures shown: ${s.shown.length}`);
  for (const p of s.shown) {
    assert.ok(p.natural[0] > 0, `${p.alt} is loaded`);
    // Proportions are kept within a pixel's rounding.
    assert.ok(Math.abs(p.w / p.h - p.natural[0] / p.natural[1]) < 0.02, `${p.alt} keeps its proportions`);
    assert.ok(p.y >= 0 && p.y + p.h <= s.height, `${p.alt} fits vertically`);
  }
  const first = current(s);
  assert.equal(first.alt, images[0].title);
  assert.ok(Math.abs(first.x + first.w / 2 - s.width / 2) < 2, 'the current picture is centred');
  for (const p of s.shown) if (p !== first) assert.ok(p.h < first.h, `${p.alt} recedes`);
  // Without reflections the pictures stand on one line low in the gallery.
  for (const p of s.shown) assert.ok(Math.abs(p.y + p.h - (first.y + first.h)) < 1, `${p.alt} stands on the line`);
  assert.ok(first.y + first.h > s.height * 0.75, 'no room is left for reflections that are not there');
  assert.ok(s.sliderAt < 0.02, 'the slider starts at the left');
  assert.deepEqual(g.problems, []);
  });
});

test('a gallery starts with its first picture and caption while the page is still arriving', async () => {
  const { site, images } = eightPictureSite('early');
  const server = await staticServer(site, { hold: `alt="${images[1].title}"/>` });
  const page = await browser.newPage();
  await page.goto(server.url + 'index.html', { waitUntil: 'commit' });
  await page.waitForFunction((title) => document.readyState === 'loading' &&
    document.querySelector('[id="captions"]')?.textContent === title, images[0].title, { timeout: 15000 });
  server.release();
  await page.waitForFunction(() => document.querySelector('[id="slidewave"]').gallery.settled, null, { timeout: 15000 });
  const s = await state(page);
  assert.equal(await page.locator('[id="captions"]').count(), 1, 'the page\'s own captions took over');
  assert.equal(s.caption, images[0].title);
  assert.equal(s.scrollbar, 'visible');
  assert.equal(s.label, 'Gallery, picture 1 of 8');
  await page.close();
  await server.close();
});

test('keys move the focused gallery only; Home and End reach the ends', async () => {
  const images = pictures('two');
  const site = publishSite(path.join(work, 'two'), [
    { left: 20, top: 10, width: 700, height: 300, pictures: images },
    { left: 20, top: 330, width: 700, height: 300, pictures: images.slice(0, 4) },
  ]);
  await withGallery(site, async (g) => {
  await g.page.locator('[id="slidewave"]').first().focus();
  await g.page.keyboard.press('ArrowRight');
  await g.page.keyboard.press('ArrowRight');
  await settle(g.page);
  assert.equal((await state(g.page, 0)).caption, images[2].title);
  assert.equal((await state(g.page, 1)).caption, images[0].title, 'the other gallery stays');
  await g.page.keyboard.press('End');
  await settle(g.page);
  let s = await state(g.page, 0);
  assert.equal(s.caption, images[7].title);
  assert.ok(s.sliderAt > 0.98, `slider at the end: ${s.sliderAt}`);
  await g.page.keyboard.press('ArrowRight');  // already at the end
  await g.page.keyboard.press('Home');
  await settle(g.page);
  assert.equal((await state(g.page, 0)).caption, images[0].title);

  await g.page.locator('[id="slidewave"]').nth(1).focus();
  await g.page.keyboard.press('End');
  await settle(g.page);
  assert.equal((await state(g.page, 1)).caption, images[3].title);
  assert.equal((await state(g.page, 0)).caption, images[0].title);
  });
});

test('dragging the slider and clicking the scroll bar move the strip', async () => {
  const { site, images } = eightPictureSite('slider');
  await withGallery(site, async (g) => {
  const slider = await g.page.locator('[id="slider"]').boundingBox();
  const bar = await g.page.locator('[id="scrollbar"]').boundingBox();
  const y = slider.y + slider.height / 2;
  await g.page.mouse.move(slider.x + slider.width / 2, y);
  await g.page.mouse.down();
  for (let i = 1; i <= 10; i++) await g.page.mouse.move(bar.x + (bar.width * 0.43 * i) / 10, y);
  // Three sevenths of the way is the fourth picture.
  assert.equal((await state(g.page)).caption, images[3].title);
  await g.page.mouse.up();
  await settle(g.page);
  let s = await state(g.page);
  assert.equal(s.caption, images[3].title);
  assert.ok(Math.abs(s.sliderAt - 3 / 7) < 0.02, `slider settles on the picture: ${s.sliderAt}`);

  await g.page.mouse.click(bar.x + bar.width - 2, bar.y + bar.height / 2);
  await settle(g.page);
  s = await state(g.page);
  assert.equal(s.caption, images[7].title);
  const last = current(s);
  assert.ok(Math.abs(last.x + last.w / 2 - s.width / 2) < 2, 'the last picture comes to the middle');
  });
});

test('wheel steps, a tap on a side picture and a swipe move the strip', async () => {
  const { site, images } = eightPictureSite('wheel');
  await withGallery(site, async (g) => {
  const box = await g.page.locator('[id="slidewave"]').first().boundingBox();
  await g.page.mouse.move(box.x + box.width / 2, box.y + box.height / 3);
  await g.page.mouse.wheel(0, 100);
  await settle(g.page);
  assert.equal((await state(g.page)).caption, images[1].title);
  await g.page.mouse.wheel(0, 200);
  await settle(g.page);
  assert.equal((await state(g.page)).caption, images[3].title);
  await g.page.mouse.wheel(0, -100);
  await settle(g.page);
  assert.equal((await state(g.page)).caption, images[2].title);

  const s = await state(g.page);
  const right = s.shown.find((p) => p.alt === images[3].title);
  await g.page.mouse.click(box.x + right.x + right.w - 4, box.y + right.y + right.h / 2);
  await settle(g.page);
  assert.equal((await state(g.page)).caption, images[3].title);

  // A swipe to the left by two picture steps (16% of the width each).
  const y = box.y + box.height / 3;
  await g.page.mouse.move(box.x + box.width * 0.8, y);
  await g.page.mouse.down();
  for (let i = 1; i <= 8; i++) await g.page.mouse.move(box.x + box.width * (0.8 - (0.32 * i) / 8), y);
  await g.page.mouse.up();
  await settle(g.page);
  assert.equal((await state(g.page)).caption, images[5].title);
  });
});

test('a picture that fails to load is left out; no broken image is shown', async () => {
  const images = pictures('broken', 4);
  const folder = path.dirname(images[0].path);
  images.splice(2, 0, { path: path.join(folder, 'Missing.png'), title: 'Missing.png' });
  fs.writeFileSync(path.join(folder, 'Garbage.png'), 'not a picture');
  images.push({ path: path.join(folder, 'Garbage.png'), title: 'Garbage.png' });
  const site = publishSite(path.join(work, 'broken'), [{ left: 0, top: 0, width: 700, height: 360, pictures: images }]);
  await withGallery(site, async (g) => {
  await g.page.locator('[id="slidewave"]').focus();
  await g.page.keyboard.press('End');
  await settle(g.page);
  const s = await state(g.page);
  assert.equal(s.caption, images[4].title);
  assert.ok(s.shown.every((p) => p.natural[0] > 0), 'only loaded pictures are displayed');
  assert.ok(!s.shown.some((p) => p.alt === 'Missing.png' || p.alt === 'Garbage.png'));
  assert.deepEqual(g.problems, []);
  });
});

test('zero pictures and one picture', async () => {
  const one = pictures('few', 1);
  const site = publishSite(path.join(work, 'few'), [
    { left: 0, top: 0, width: 500, height: 250, pictures: [] },
    { left: 0, top: 260, width: 500, height: 250, pictures: one },
  ]);
  await withGallery(site, async (g) => {
  const none = await state(g.page, 0);
  assert.equal(none.shown.length, 0);
  assert.equal(none.caption, 'No pictures to show');
  const single = await state(g.page, 1);
  assert.equal(single.shown.length, 1);
  assert.equal(single.caption, one[0].title);
  assert.equal(single.scrollbar, 'hidden', 'no scroll bar for a single picture');
  await g.page.locator('[id="slidewave"]').nth(1).focus();
  await g.page.keyboard.press('ArrowRight');
  await g.page.mouse.wheel(0, 300);
  assert.equal((await state(g.page, 1)).caption, one[0].title);
  assert.deepEqual(g.problems, []);
  });
});

test('hundreds of pictures: only the neighbourhood is displayed, End reaches the last', async () => {
  const { site, images } = eightPictureSite('many', { count: 300 });
  await withGallery(site, { reducedMotion: 'reduce' }, async (g) => {
  let s = await state(g.page);
  assert.ok(s.shown.length <= 13, `displayed: ${s.shown.length}`);
  await g.page.locator('[id="slidewave"]').focus();
  await g.page.keyboard.press('End');
  s = await state(g.page);  // reduced motion: no glide to wait for
  assert.equal(s.caption, images[299].title);
  });
});

test('a resized gallery lays the strip out again', async () => {
  const { site } = eightPictureSite('resize');
  await withGallery(site, async (g) => {
  const before = current(await state(g.page));
  await g.page.evaluate(() => {
    const root = document.querySelector('[id="slidewave"]');
    root.style.width = '400px';
    root.style.height = '260px';
  });
  // Resize observers report before the next frame is painted.
  await g.page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
  const s = await state(g.page);
  const now = current(s);
  assert.ok(now.h < before.h, 'the current picture shrinks with the gallery');
  assert.ok(Math.abs(now.x + now.w / 2 - 200) < 2, 'and stays centred');
  for (const p of s.shown) assert.ok(p.y + p.h <= 260);
  });
});

test('reflections without PHP: the original picture with a drawn reflection', async () => {
  const { site, images } = eightPictureSite('reflect-static', { reflection: true });
  await withGallery(site, async (g) => {
  const s = await state(g.page);
  assert.ok(s.shown.length >= 5);
  for (const p of s.shown) {
    assert.equal(p.tag, 'CANVAS', `${p.alt} is drawn with its reflection`);
    const original = images.find((i) => i.title === p.alt);
    assert.deepEqual(p.natural, [original.width, original.height * 1.5]);
  }
  // The reflection fades: its first rows are brighter than its last.
  const fade = await g.page.evaluate(() => {
    const c = document.querySelector('[id="images"] canvas');
    const g = c.getContext('2d');
    const alpha = (y) => g.getImageData(Math.floor(c.width / 2), y, 1, 1).data[3];
    const h = c.height / 1.5;
    return [alpha(Math.floor(h / 2)), alpha(Math.floor(h) + 1), alpha(c.height - 1)];
  });
  assert.equal(fade[0], 255);
  assert.ok(fade[1] > 100 && fade[1] < 140, `reflection starts half visible: ${fade[1]}`);
  assert.ok(fade[2] < 10, `and fades out: ${fade[2]}`);
  assert.deepEqual(g.problems, []);
  fs.mkdirSync(screenshots, { recursive: true });
  await g.page.screenshot({ path: path.join(screenshots, 'gallery-without-php.png'), clip: { x: 20, y: 10, width: 800, height: 460 } });
  });
});

test('pictures named with #, %, ?, blanks and accents show, with and without reflections', async () => {
  const names = ['a#1.png', '100%.png', 'why?.png', 'my pic.png', 'caf\u00e9.png'];
  const images = pictures('odd-names', names.length).map((p, i) => {
    const renamed = path.join(path.dirname(p.path), names[i]);
    fs.renameSync(p.path, renamed);
    return { ...p, path: renamed, title: names[i] };
  });
  for (const [reflection, php] of [[false, false], [true, true], [true, false]]) {
    const site = publishSite(path.join(work, `odd-names-${reflection}-${php}`),
      [{ left: 0, top: 0, width: 900, height: 400, pictures: images, reflection }]);
    for (const name of names) assert.ok(fs.existsSync(path.join(site, 'images', name)), `${name} keeps its name`);
    await withGallery(site, { php }, async (g) => {
      const s = await state(g.page);
      assert.deepEqual(s.shown.map((p) => p.alt).sort(), [...names].sort(), `all shown (${reflection}, ${php})`);
      for (const p of s.shown) {
        const original = images.find((i) => i.title === p.alt);
        assert.deepEqual(p.natural, [original.width, original.height * (reflection ? 1.5 : 1)], p.alt);
        // reflect.php delivers the reflected picture (the script would draw one itself if it failed)
        if (php) assert.match(`${p.tag} ${p.src}`, /^IMG reflect\.php\?img=images\//, p.alt);
      }
      assert.deepEqual(g.problems, []);
    });
  }
});

test('the configured font reaches the page: FontSize 30 and Courier New', async () => {
  const site = publishSite(path.join(work, 'font'), [{ left: 0, top: 0, width: 700, height: 360,
    pictures: pictures('font', 3), sets: ['FontSize=30', 'FontName=Courier New'] }]);
  await withGallery(site, async (g) => {
    const font = await g.page.evaluate(() => {
      const style = getComputedStyle(document.querySelector('[id="captions"]'));
      return [style.fontSize, style.fontFamily, document.compatMode];
    });
    assert.deepEqual(font, ['30px', '"Courier New"', 'BackCompat']);
  });
});
