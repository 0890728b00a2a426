/*
 * Slidewave gallery: a strip of pictures moved with slider, scroll bar,
 * wheel, swipes, taps and keys. Works per #slidewave block (ids may repeat)
 * on its #loading, #images (img: src, longdesc = file, alt = title),
 * #captions, #scrollbar and #slider. Without PHP the reflection is drawn
 * here; pictures that fail to load are left out.
 */
(function () {
'use strict';

var REFLECTION = 0.5;  // reflection height / picture height (reflect.php)
var SIDE = 6;          // pictures shown beside the current one
var TIMEOUT = 20000;   // then start with what loaded (ms)
var GLIDE = 140;       // time constant of the glide (ms)
var WHEEL_STEP = 100;  // wheel pixels per picture

var calm = matchMedia('(prefers-reduced-motion: reduce)');

function clamp(v, lo, hi) { return v < lo ? lo : v > hi ? hi : v; }

function Gallery(root) {
  this.root = root;
  this.strip = this.part('images');
  this.items = [];   // { element, img, ratio, reflected }
  this.offset = 0;   // fractional while gliding
  this.target = 0;
  this.wheel = 0;
  if (this.strip) this.prepare();
}

Gallery.prototype.part = function (id) { return this.root.querySelector('[id="' + id + '"]'); };

Gallery.prototype.prepare = function () {
  var root = this.root, self = this;
  root.tabIndex = 0;
  root.setAttribute('role', 'region');
  root.setAttribute('aria-roledescription', 'gallery');
  root.setAttribute('aria-label', 'Gallery');
  root.style.cssText += ';position:relative;overflow:hidden';
  this.strip.style.cssText += ';position:relative;overflow:hidden;touch-action:pan-y';

  // Start as soon as the first picture that loads has loaded (or at the
  // time-out); the others join the strip as they arrive, a frame's worth at
  // a time. settled tells that the page is parsed and the strip lists every
  // picture there is.
  var images = this.strip.getElementsByTagName('img');
  this.images = images;
  this.pending = 0;
  this.watched = 0;
  this.arrived = function () {
    self.pending--;
    if (!self.started) {
      for (var i = 0; i < images.length && images[i].state === 'failed'; i++);
      if (i < images.length && !images[i].state) return;
      self.start();
    } else {
      self.relistSoon();
    }
  };
  this.grow();
  setTimeout(function () { if (!self.started) self.start(); }, TIMEOUT);
};

// While the page is still being parsed the gallery may start with part of
// its pictures, and the captions and the scroll bar, which come after them,
// not there yet: this takes in what has come since.
Gallery.prototype.grow = function () {
  var changed = false;
  if (!this.loading) this.loading = this.part('loading');
  if (!this.captions || this.standIn) {
    var found = this.root.querySelectorAll('[id="captions"]'), own = null;
    for (var k = 0; k < found.length && !own; k++) if (found[k] !== this.standIn) own = found[k];
    if (own) {
      if (this.standIn) {
        own.textContent = this.standIn.textContent;
        this.standIn.parentNode.removeChild(this.standIn);
        this.standIn = null;
      }
      this.adoptCaptions(own);
      changed = true;
    }
  }
  if (!this.bar && (this.bar = this.part('scrollbar'))) {
    this.bar.style.cssText += ';height:10px;margin:6px 10% 0;cursor:pointer;touch-action:none';
    this.bar.setAttribute('aria-hidden', 'true');
    if (this.started) this.bindBar();
    changed = true;
  }
  if (!this.slider && (this.slider = this.part('slider'))) {
    this.slider.style.top = '10px';
    changed = true;
  }
  for (; this.watched < this.images.length; this.watched++) {
    this.pending++;
    this.watch(this.images[this.watched], this.arrived);
  }
  var parsed = document.readyState !== 'loading';
  if (parsed && !this.parsed) changed = true;  // settled may hold now
  this.parsed = parsed;
  if (parsed && !this.images.length && !this.started) return this.start();
  if (this.started && changed) this.relistSoon();
};

// Lists the pictures again at the next frame (once, however often asked).
Gallery.prototype.relistSoon = function () {
  var self = this;
  if (!this.relist) this.relist = requestAnimationFrame(function () { self.relist = 0; self.start(); });
};

Gallery.prototype.watch = function (img, settle) {
  var self = this, viaPhp = /reflect\.php/.test(img.src), original = img.getAttribute('longdesc');
  img.draggable = false;
  img.decoding = 'async';
  img.style.display = 'none';
  var ok = function () {
    img.state = viaPhp ? 'reflected' : 'plain';
    settle();
  };
  var failed = function () {
    if (viaPhp && original && !img.canvas) {
      self.reflect(img, original, settle);
    } else {
      img.state = 'failed';
      settle();
    }
  };
  if (img.complete && img.getAttribute('src')) {
    if (img.naturalWidth) ok(); else failed();
  } else {
    img.addEventListener('load', ok);
    img.addEventListener('error', failed);
  }
};

// Draws the original picture with its reflection.
Gallery.prototype.reflect = function (img, original, settle) {
  var source = new Image();
  source.onerror = function () { img.state = 'failed'; settle(); };
  source.onload = function () {
    var w = source.naturalWidth, h = source.naturalHeight, r = Math.round(h * REFLECTION) || 1;
    var canvas = document.createElement('canvas'), g = canvas.getContext('2d');
    canvas.width = w;
    canvas.height = h + r;
    g.drawImage(source, 0, 0);
    g.setTransform(1, 0, 0, -1, 0, 2 * h);  // mirror below the picture
    g.drawImage(source, 0, h - r, w, r, 0, h - r, w, r);
    g.setTransform(1, 0, 0, 1, 0, 0);
    // reflect.php's fade: half visible, then distance squared.
    var fade = g.createLinearGradient(0, h, 0, h + r);
    for (var t = 0; t <= 1; t += 0.25) {
      fade.addColorStop(t, 'rgba(0,0,0,' + (1 - 0.5 * (1 - t) * (1 - t)) + ')');
    }
    g.globalCompositeOperation = 'destination-out';
    g.fillStyle = fade;
    g.fillRect(0, h, w, r);
    canvas.setAttribute('role', 'img');
    canvas.setAttribute('aria-label', img.alt);
    canvas.style.cssText = 'position:absolute;display:none';
    img.parentNode.insertBefore(canvas, img);
    img.canvas = canvas;
    img.state = 'reflected';
    settle();
  };
  source.src = original;
};

// (Re)lists the loaded pictures and lays them out.
Gallery.prototype.start = function () {
  var self = this, current = this.items[Math.round(this.target)];
  if (!this.started) {
    this.started = true;
    if (this.loading) this.loading.style.display = 'none';
    this.strip.style.visibility = 'visible';
    if (!this.captions && !this.parsed) this.standInCaptions();
    this.bind();
    if (window.ResizeObserver) new ResizeObserver(function () { self.layout(); }).observe(this.root);
  }
  var images = this.strip.getElementsByTagName('img');
  this.items = [];
  this.mirror = 0;  // room for reflections
  for (var i = 0; i < images.length; i++) {
    var img = images[i], element = img.canvas || img;
    var w = element.naturalWidth || element.width, h = element.naturalHeight || element.height;
    if (!img.state || img.state === 'failed' || !w || !h) continue;
    var reflected = img.state === 'reflected';
    if (reflected) this.mirror = REFLECTION;
    if (current && current.img === img) this.offset = this.target = this.items.length;
    this.items.push({ element: element, img: img, reflected: reflected,
      ratio: w * (reflected ? 1 + REFLECTION : 1) / h });
  }
  var n = this.items.length;
  this.settled = this.parsed && this.pending <= 0;
  this.target = clamp(this.target, 0, n - 1 || 0);
  this.offset = clamp(this.offset, 0, n - 1 || 0);
  if (this.bar) this.bar.style.visibility = n > 1 ? 'visible' : 'hidden';
  this.layout();
};

// The current picture fits the strip and half its width; the others
// shrink and darken with distance. Only neighbours are displayed, and only
// they are touched: the cost of a frame does not grow with the gallery.
Gallery.prototype.layout = function () {
  var n = this.items.length, W = this.root.clientWidth;
  var below = (this.captions ? this.captions.offsetHeight : 0) + (this.bar ? 26 : 0);
  var H = Math.max(20, this.root.clientHeight - below - 8);
  var shown = [];
  this.strip.style.height = H + 'px';
  if (n) {
    var top = H * 0.04, tallest = (H - 2 * top) / (1 + this.mirror), step = Math.max(24, W * 0.16);
    var first = Math.max(0, Math.ceil(this.offset - SIDE - 1)), last = Math.min(n - 1, this.offset + SIDE + 1);
    for (var i = first; i <= last; i++) {
      var item = this.items[i], style = item.element.style, d = i - this.offset, a = Math.abs(d);
      var h = Math.min(tallest, W * 0.5 / item.ratio) / (1 + 0.35 * a), w = h * item.ratio;
      var centre = W / 2 + (a < 1 ? d * step * 1.6 : (d < 0 ? -1 : 1) * step * (0.6 + a));
      style.display = 'block';
      style.left = centre - w / 2 + 'px';
      style.top = top + tallest - h + 'px';  // all pictures stand on one line
      style.width = w + 'px';
      style.height = h * (item.reflected ? 1 + REFLECTION : 1) + 'px';
      style.zIndex = 1000 - Math.round(a * 10);
      style.filter = a < 0.01 ? '' : 'brightness(' + Math.max(0.3, 1 - 0.3 * a) + ')';
      style.cursor = a > 0.5 ? 'pointer' : '';
      shown.push(item.element);
    }
  }
  // What was displayed before and is not now goes.
  for (var j = 0; j < (this.shown || []).length; j++) {
    if (shown.indexOf(this.shown[j]) < 0) this.shown[j].style.display = 'none';
  }
  this.shown = shown;
  if (!n) return this.caption('No pictures to show');
  var index = Math.round(this.offset);
  this.caption(this.items[index].img.alt);
  if (this.slider && this.bar) {
    this.slider.style.left = (n > 1 ? this.offset / (n - 1) : 0) * this.bar.clientWidth + 'px';
  }
  this.root.setAttribute('aria-label', 'Gallery, picture ' + (index + 1) + ' of ' + n);
};

Gallery.prototype.caption = function (text) {
  if (this.captions && this.captions.textContent !== text) this.captions.textContent = text;
};

// Glides to a position, or jumps there (dragging, reduced motion).
Gallery.prototype.go = function (position, jump) {
  var self = this, last = 0;
  if (!this.items.length) return;
  this.target = clamp(position, 0, this.items.length - 1);
  if (jump || calm.matches) {
    this.offset = this.target;
    return this.layout();
  }
  var tick = function (now) {
    var diff = self.target - self.offset;
    self.offset += diff * (1 - Math.exp(-Math.min(64, last ? now - last : 16) / GLIDE));
    last = now;
    if (Math.abs(diff) < 0.002) {
      self.offset = self.target;
      self.frame = 0;
    } else {
      self.frame = requestAnimationFrame(tick);
    }
    self.layout();
  };
  if (!this.frame) this.frame = requestAnimationFrame(tick);
};

Gallery.prototype.bind = function () {
  var self = this, root = this.root, strip = this.strip;
  var at = function () { return Math.round(self.target); };
  var near = function () { self.go(Math.round(self.offset)); };

  root.addEventListener('keydown', function (e) {
    var to = {
      ArrowLeft: at() - 1, ArrowUp: at() - 1, ArrowRight: at() + 1, ArrowDown: at() + 1,
      PageUp: at() - 5, PageDown: at() + 5, Home: 0, End: self.items.length - 1
    }[e.key];
    if (to === undefined || e.altKey || e.ctrlKey || e.metaKey) return;
    e.preventDefault();
    self.go(to);
  });

  // A picture per step; at the ends the page scrolls instead.
  root.addEventListener('wheel', function (e) {
    var delta = Math.abs(e.deltaX) > Math.abs(e.deltaY) ? e.deltaX : e.deltaY;
    delta *= [1, 33, 400][e.deltaMode] || 1;  // lines/pages
    if (delta < 0 ? at() <= 0 : at() >= self.items.length - 1) return;
    e.preventDefault();
    self.wheel += delta;
    var steps = (self.wheel < 0 ? Math.ceil : Math.floor)(self.wheel / WHEEL_STEP);
    if (!steps && Math.abs(delta) >= WHEEL_STEP / 2) steps = delta > 0 ? 1 : -1;
    if (steps) {
      self.wheel = 0;
      self.go(at() + steps);
    }
  }, { passive: false });

  if (this.bar) this.bindBar();

  // Swipes move the strip; a tap brings a side picture forward.
  var swipe = null;
  strip.addEventListener('pointerdown', function (e) {
    if (!e.button) swipe = { x: e.clientX, from: self.offset, moved: false };
  });
  strip.addEventListener('pointermove', function (e) {
    var dx = swipe ? e.clientX - swipe.x : 0;
    if (!swipe || (!swipe.moved && Math.abs(dx) < 8)) return;
    if (!swipe.moved) strip.setPointerCapture(e.pointerId);
    swipe.moved = true;
    self.go(swipe.from - dx / Math.max(24, root.clientWidth * 0.16), true);
  });
  strip.addEventListener('pointerup', function (e) {
    var tapped = swipe && !swipe.moved;
    swipe = null;
    if (!tapped) return near();
    for (var i = 0; i < self.items.length; i++) {
      if (self.items[i].element === e.target) self.go(i);
    }
  });
  strip.addEventListener('pointercancel', function () { swipe = null; near(); });
};

Gallery.prototype.adoptCaptions = function (captions) {
  captions.setAttribute('aria-live', 'polite');
  captions.style.minHeight = '1.4em';
  this.captions = captions;
};

// Until the page's own captions element is parsed, a stand-in in its place
// shows the caption of the first picture.
Gallery.prototype.standInCaptions = function () {
  var captions = document.createElement('div');
  captions.id = 'captions';
  this.strip.parentNode.insertBefore(captions, this.strip.nextSibling);
  this.standIn = captions;
  this.adoptCaptions(captions);
};

// Press the bar to jump, drag; release settles on a picture.
Gallery.prototype.bindBar = function () {
  var self = this, bar = this.bar, drag = false;
  var follow = function (e) {
    var box = bar.getBoundingClientRect();
    self.go(clamp((e.clientX - box.left) / (box.width || 1), 0, 1) * (self.items.length - 1), true);
  };
  bar.addEventListener('pointerdown', function (e) {
    if (e.button) return;
    drag = true;
    bar.setPointerCapture(e.pointerId);
    e.preventDefault();
    self.root.focus({ preventScroll: true });
    follow(e);
  });
  bar.addEventListener('pointermove', function (e) { if (drag) follow(e); });
  ['pointerup', 'pointercancel'].forEach(function (type) {
    bar.addEventListener(type, function () { if (drag) self.go(Math.round(self.offset)); drag = false; });
  });
};

// Starts new galleries and lets those started take in what was parsed
// since; pages adding one later call Slidewave.start(). While the page is
// parsed, a gallery starts once its strip holds a picture.
function startAll() {
  var roots = document.querySelectorAll('[id="slidewave"]'), parsing = document.readyState === 'loading';
  for (var i = 0; i < roots.length; i++) {
    var gallery = roots[i].gallery;
    if (gallery) {
      gallery.grow();
    } else if (!parsing || (roots[i].querySelector('[id="images"] img'))) {
      roots[i].gallery = new Gallery(roots[i]);
    }
  }
}

window.Slidewave = { start: startAll };
if (document.readyState === 'loading') {
  var parsed = new MutationObserver(startAll);
  parsed.observe(document, { childList: true, subtree: true });
  document.addEventListener('DOMContentLoaded', function () {
    parsed.disconnect();
    startAll();
  });
} else {
  startAll();
}
})();
