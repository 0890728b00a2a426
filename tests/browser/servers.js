// Local web servers for the browser tests, bound to 127.0.0.1 on a free
// port: a plain static server (a host without PHP) and PHP's built-in one.
'use strict';

const fs = require('node:fs');
const http = require('node:http');
const net = require('node:net');
const path = require('node:path');
const { spawn } = require('node:child_process');

const types = {
  '.html': 'text/html; charset=utf-8', '.css': 'text/css', '.js': 'text/javascript',
  '.png': 'image/png', '.gif': 'image/gif', '.jpg': 'image/jpeg', '.php': 'text/plain',
};

// Serves files from root; a .php file is sent as text, as a server without
// PHP would, so reflect.php requests return something that is no picture.
// With hold, index.html stops after the text hold until release() is called.
function staticServer(root, { hold } = {}) {
  let release;
  const released = new Promise((resolve) => { release = resolve; });
  const server = http.createServer((request, response) => {
    let file;
    try {
      file = path.join(root, decodeURIComponent(new URL(request.url, 'http://127.0.0.1').pathname));
    } catch {  // a malformed escape such as "100%.png"
      response.writeHead(400, { 'Content-Type': 'text/plain' });
      response.end('bad request');
      return;
    }
    if (!file.startsWith(root) || !fs.existsSync(file) || fs.statSync(file).isDirectory()) {
      response.writeHead(404, { 'Content-Type': 'text/plain' });
      response.end('not found');
      return;
    }
    response.writeHead(200, { 'Content-Type': types[path.extname(file)] || 'application/octet-stream' });
    const text = hold && path.basename(file) === 'index.html' && fs.readFileSync(file, 'latin1');
    if (!text) return fs.createReadStream(file).pipe(response);
    const cut = text.indexOf(hold) + hold.length;
    response.write(text.slice(0, cut), 'latin1');
    released.then(() => response.end(text.slice(cut), 'latin1'));
  });
  return new Promise((resolve) => {
    server.listen(0, '127.0.0.1', () => resolve({
      url: `http://127.0.0.1:${server.address().port}/`,
      release,
      close: () => new Promise((done) => server.close(done)),
    }));
  });
}

function freePort() {
  return new Promise((resolve, reject) => {
    const probe = net.createServer();
    probe.listen(0, '127.0.0.1', () => {
      const { port } = probe.address();
      probe.close(() => resolve(port));
    });
    probe.on('error', reject);
  });
}

// php -S on 127.0.0.1, ready once it accepts connections.
async function phpServer(root) {
  const port = await freePort();
  const child = spawn('php', ['-S', `127.0.0.1:${port}`, '-t', root], { stdio: 'ignore' });
  const url = `http://127.0.0.1:${port}/`;
  for (let i = 0; i < 100; i++) {
    try {
      await fetch(url + 'index.html');
      break;
    } catch {
      await new Promise((r) => setTimeout(r, 50));
    }
  }
  return {
    url,
    close: () => new Promise((done) => {
      if (child.exitCode !== null) return done();
      child.once('exit', () => done());
      child.kill();
    }),
  };
}

module.exports = { staticServer, phpServer };
