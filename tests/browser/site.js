// Builds published gallery sites for the browser tests: pictures drawn here,
// published with "pwext publish" as the host publishes a page.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const zlib = require('node:zlib');
const { execFileSync } = require('node:child_process');

const repo = path.resolve(__dirname, '..', '..');
const pwext = process.env.PWEXT || path.join(repo, 'build', 'native', 'bin', 'pwext');

// --- pictures ------------------------------------------------------------------

const crcTable = Array.from({ length: 256 }, (_, n) => {
  let c = n;
  for (let k = 0; k < 8; k++) c = c & 1 ? 0xedb88320 ^ (c >>> 1) : c >>> 1;
  return c >>> 0;
});
function crc32(buffer) {
  let c = 0xffffffff;
  for (const b of buffer) c = crcTable[(c ^ b) & 0xff] ^ (c >>> 8);
  return (c ^ 0xffffffff) >>> 0;
}
function chunk(type, data) {
  const head = Buffer.alloc(4);
  head.writeUInt32BE(data.length);
  const body = Buffer.concat([Buffer.from(type, 'ascii'), data]);
  const tail = Buffer.alloc(4);
  tail.writeUInt32BE(crc32(body));
  return Buffer.concat([head, body, tail]);
}

// An RGB PNG from pixel(x, y) -> [r, g, b].
function png(width, height, pixel) {
  const raw = Buffer.alloc((width * 3 + 1) * height);
  for (let y = 0; y < height; y++) {
    const row = y * (width * 3 + 1);
    for (let x = 0; x < width; x++) {
      const [r, g, b] = pixel(x, y);
      raw[row + 1 + x * 3] = r;
      raw[row + 2 + x * 3] = g;
      raw[row + 3 + x * 3] = b;
    }
  }
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header[8] = 8;
  header[9] = 2;
  return Buffer.concat([
    Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]),
    chunk('IHDR', header),
    chunk('IDAT', zlib.deflateSync(raw)),
    chunk('IEND', Buffer.alloc(0)),
  ]);
}

// A landscape: sky in the scene's colours, a sun, two rows of hills.
function landscape(width, height, scene) {
  const mix = (a, b, t) => a.map((v, i) => Math.round(v + (b[i] - v) * t));
  return png(width, height, (x, y) => {
    const u = x / width, v = y / height;
    const hill1 = 0.62 + 0.08 * Math.sin(u * 6.3 + scene.phase);
    const hill2 = 0.75 + 0.06 * Math.sin(u * 9.1 + scene.phase * 2);
    const dx = u - scene.sun[0], dy = (v - scene.sun[1]) * height / width;
    if (v > hill2) return mix(scene.near, [0, 0, 0], (v - hill2) * 1.2);
    if (v > hill1) return mix(scene.far, scene.near, (v - hill1) * 3);
    if (dx * dx + dy * dy < 0.006) return scene.sunColour;
    return mix(scene.top, scene.horizon, v / hill1);
  });
}

const scenes = [
  { title: 'Morning lake', w: 480, h: 320, top: [70, 120, 200], horizon: [250, 200, 150], far: [60, 110, 90], near: [30, 80, 50], sun: [0.25, 0.35], sunColour: [255, 240, 200], phase: 0.3 },
  { title: 'Desert noon', w: 400, h: 300, top: [40, 110, 210], horizon: [200, 220, 240], far: [210, 160, 90], near: [180, 120, 60], sun: [0.7, 0.2], sunColour: [255, 255, 230], phase: 1.1 },
  { title: 'Tall pines', w: 260, h: 390, top: [90, 150, 220], horizon: [220, 235, 245], far: [40, 100, 60], near: [20, 60, 30], sun: [0.5, 0.18], sunColour: [255, 250, 220], phase: 2.0 },
  { title: 'Sunset bay', w: 512, h: 288, top: [60, 40, 110], horizon: [250, 130, 60], far: [90, 50, 70], near: [40, 20, 40], sun: [0.55, 0.52], sunColour: [255, 200, 90], phase: 2.7 },
  { title: 'Snow field', w: 420, h: 300, top: [120, 160, 210], horizon: [230, 240, 250], far: [200, 210, 225], near: [240, 245, 250], sun: [0.3, 0.25], sunColour: [255, 255, 255], phase: 0.9 },
  { title: 'Autumn hills', w: 360, h: 360, top: [100, 140, 200], horizon: [240, 210, 170], far: [190, 110, 40], near: [130, 60, 20], sun: [0.8, 0.3], sunColour: [255, 230, 180], phase: 3.4 },
  { title: 'Night harbour', w: 480, h: 300, top: [10, 15, 40], horizon: [50, 60, 110], far: [30, 35, 60], near: [10, 10, 25], sun: [0.2, 0.2], sunColour: [240, 240, 210], phase: 4.2 },
  { title: 'Green valley', w: 300, h: 400, top: [80, 150, 230], horizon: [200, 230, 250], far: [90, 160, 70], near: [50, 120, 40], sun: [0.65, 0.15], sunColour: [255, 250, 200], phase: 5.0 },
];

// --- publishing ------------------------------------------------------------------

// The sample pictures (eight scenes, repeated for more), written into the
// folder source, named after their scenes. Titles are the file names, as
// the Files dialog makes them.
function writePictures(source, count = scenes.length) {
  fs.mkdirSync(source, { recursive: true });
  const pictures = [];
  for (let i = 0; i < count; i++) {
    const scene = scenes[i % scenes.length];
    const name = (i < scenes.length ? scene.title : `${scene.title} ${i + 1}`) + '.png';
    fs.writeFileSync(path.join(source, name), landscape(scene.w, scene.h, scene));
    pictures.push({ path: path.join(source, name), title: name, width: scene.w, height: scene.h });
  }
  return pictures;
}

// Publishes one gallery with pwext into site (pictures into site/images)
// and returns the page it wrote. A picture that is missing makes pwext
// report a failure after writing everything else; that is expected when
// the list names one on purpose.
function publish(site, pageName, gallery) {
  const args = ['publish', site, path.join(site, 'images'), '--page', pageName,
    '--geometry', [gallery.left, gallery.top, gallery.width, gallery.height].join(',')];
  if (gallery.pictures.length) args.push('--images', ...gallery.pictures.map((p) => p.path));
  if (gallery.reflection) args.push('--set', '$enablereflection$=true');
  for (const set of gallery.sets || []) args.push('--set', set);
  try {
    execFileSync(pwext, args, { stdio: 'pipe' });
  } catch (e) {
    if (!gallery.pictures.some((p) => !fs.existsSync(p.path))) throw new Error(String(e.stderr || e));
  }
  return fs.readFileSync(path.join(site, pageName), 'latin1');
}

// Publishes galleries ({ left, top, width, height, pictures, reflection })
// into a fresh folder site; index.html shows all of them: the page of the
// first with the bodies of the others added, as a page holding several
// gallery objects would be.
function publishSite(site, galleries) {
  fs.rmSync(site, { recursive: true, force: true });
  const pages = galleries.map((g, i) => publish(site, `gallery-${i + 1}.html`, g));
  const bodyOf = (page) => page.slice(page.indexOf('<body>') + 6, page.lastIndexOf('</body>'));
  const first = pages[0];
  const index = first.slice(0, first.lastIndexOf('</body>')) + pages.slice(1).map(bodyOf).join('') +
    first.slice(first.lastIndexOf('</body>'));
  fs.writeFileSync(path.join(site, 'index.html'), index.replace('</head>',
    '<style>body { margin: 0; background: #2b2d33; }</style>\r\n</head>'), 'latin1');
  return site;
}

module.exports = { publishSite, writePictures, png, repo, pwext };
