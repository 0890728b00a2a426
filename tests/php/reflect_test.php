<?php
// Tests of reflect.php through PHP's built-in server on 127.0.0.1: the
// reflection it draws, its refusals (always a 4xx with a plain reason,
// never a PHP error) and its caching headers.
//
//   php tests/php/reflect_test.php [path/to/reflect.php]

$script = $argv[1] ?? __DIR__ . '/../../resources/slidewave/files/reflect.php';
$failures = 0;
$count = 0;

function check($ok, $what)
{
    global $failures, $count;
    $count++;
    if (!$ok) {
        $failures++;
    }
    echo ($ok ? 'ok' : 'not ok'), " $count - $what\n";
}

// --- the gallery folder ---------------------------------------------------------

$root = sys_get_temp_dir() . '/slidewave-php-' . getmypid();
$outside = $root . '-outside';
@mkdir("$root/images/nested", 0777, true);
@mkdir($outside, 0777, true);
copy($script, "$root/reflect.php");
$cache = sys_get_temp_dir() . '/slidewave-reflect-' . sha1(realpath($root));

// A 120 x 80 picture: a vertical colour ramp, so each row is recognisable.
$picture = imagecreatetruecolor(120, 80);
for ($y = 0; $y < 80; $y++) {
    imagefilledrectangle($picture, 0, $y, 119, $y, imagecolorallocate($picture, $y * 3, 100, 255 - $y * 3));
}
imagepng($picture, "$root/images/ramp.png");
imagejpeg($picture, "$root/images/Photo with spaces.jpg", 95);
imagegif($picture, "$root/images/nested/small.gif");
// Large enough to be scaled down before it is reflected.
$large = imagecreatetruecolor(2000, 2000);
imagepng($large, "$root/images/large.png", 0);
copy("$root/images/Photo with spaces.jpg", "$root/images/jpeg-named.png");
imagepng($picture, "$outside/secret.png");
@symlink("$outside/secret.png", "$root/images/link.png");
file_put_contents("$root/images/notes.txt", 'not a picture');
file_put_contents("$root/images/drawing.svg", '<svg xmlns="http://www.w3.org/2000/svg"/>');

// Pictures whose headers claim more pixels than the budget: refused from
// the header alone, before anything is decoded.
function png_chunk($type, $data)
{
    return pack('N', strlen($data)) . $type . $data . pack('N', crc32($type . $data));
}
file_put_contents("$root/images/huge.png", "\x89PNG\r\n\x1a\n"
    . png_chunk('IHDR', pack('NNCCCCC', 5000, 4000, 8, 2, 0, 0, 0))
    . png_chunk('IDAT', gzcompress('')) . png_chunk('IEND', ''));
file_put_contents("$root/images/huge.gif", "GIF89a" . pack('vv', 65535, 65535) . "\x00\x00\x00" . ';');

// --- the server -------------------------------------------------------------------

$probe = stream_socket_server('tcp://127.0.0.1:0');
$port = (int) substr(strrchr(stream_socket_get_name($probe, false), ':'), 1);
fclose($probe);
$server = proc_open(
    [PHP_BINARY, '-S', "127.0.0.1:$port", '-t', $root],
    [0 => ['file', '/dev/null', 'r'], 1 => ['file', '/dev/null', 'w'], 2 => ['file', '/dev/null', 'w']],
    $pipes
);
for ($i = 0; $i < 100 && !@fsockopen('127.0.0.1', $port); $i++) {
    usleep(50000);
}

// One request: [status, headers (lower-case names), body].
function request($query, $method = 'GET', $headers = array())
{
    global $port;
    $context = stream_context_create(array('http' => array(
        'method' => $method, 'ignore_errors' => true, 'header' => $headers,
    )));
    $body = @file_get_contents("http://127.0.0.1:$port/reflect.php?$query", false, $context);
    $status = 0;
    $names = array();
    foreach ($http_response_header ?? array() as $line) {
        if (preg_match('#^HTTP/\S+ (\d+)#', $line, $m)) {
            $status = (int) $m[1];
        } elseif (strpos($line, ':') !== false) {
            list($name, $value) = explode(':', $line, 2);
            $names[strtolower($name)] = trim($value);
        }
    }
    return array($status, $names, $body === false ? '' : $body);
}

try {
    // --- the reflection -------------------------------------------------------------

    list($status, $headers, $body) = request('img=images/ramp.png');
    check($status === 200 && $headers['content-type'] === 'image/png', 'a picture comes back as PNG');
    $result = @imagecreatefromstring($body);
    check($result && imagesx($result) === 120 && imagesy($result) === 120, 'the result is 50% taller');
    if ($result) {
        $rgb = function ($x, $y) use ($result) { return imagecolorat($result, $x, $y) & 0xFFFFFF; };
        $alpha = function ($x, $y) use ($result) { return (imagecolorat($result, $x, $y) >> 24) & 0x7F; };
        check($rgb(60, 10) === (imagecolorat($picture, 60, 10) & 0xFFFFFF) && $alpha(60, 10) === 0,
            'the picture itself is unchanged and opaque');
        check($rgb(60, 80) === (imagecolorat($picture, 60, 79) & 0xFFFFFF), 'the reflection mirrors the lowest row first');
        check($rgb(60, 90) === (imagecolorat($picture, 60, 69) & 0xFFFFFF), 'and continues upwards');
        $fading = true;
        for ($y = 81; $y < 120; $y++) {
            $fading = $fading && $alpha(60, $y) >= $alpha(60, $y - 1);
        }
        check(abs($alpha(60, 80) - 63) <= 2 && $fading && $alpha(60, 119) >= 125,
            'the reflection starts half transparent and fades out');
    }
    list($status, , $body) = request('img=images/ramp.png&height=100&fade=80');
    $tall = @imagecreatefromstring($body);
    check($status === 200 && $tall && imagesy($tall) === 160, 'height=100 makes a full-height reflection');
    list($status, , $body) = request('img=' . rawurlencode('images/Photo with spaces.jpg'));
    check($status === 200 && strncmp($body, "\x89PNG", 4) === 0, 'names with blanks work (jpeg)');
    list($status) = request('img=images/nested/small.gif');
    check($status === 200, 'pictures in subfolders work (gif)');

    // --- refusals ---------------------------------------------------------------------

    $refused = array(
        'img=../reflect.php' => 403,
        'img=images/../../etc/passwd.png' => 403,
        'img=images/./ramp.png' => 403,
        'img=/etc/hosts.png' => 403,
        'img=images//ramp.png' => 403,
        'img=' . rawurlencode('php://filter/resource=images/ramp.png') => 400,
        'img=' . rawurlencode('C:\\Windows\\x.png') => 400,
        'img=' . rawurlencode("images/ramp.png\0.png") => 400,
        'img=images/link.png' => 403,
        'img=images/notes.txt' => 415,
        'img=images/drawing.svg' => 415,
        'img=reflect.php' => 415,
        'img=images/jpeg-named.png' => 415,
        'img=images/huge.png' => 413,
        'img=images/huge.gif' => 413,
        'img=images/missing.png' => 404,
        'img=' => 400,
        '' => 400,
        'img[]=images/ramp.png' => 400,
        'img=images/ramp.png&height=5' => 400,
        'img=images/ramp.png&fade=x' => 400,
        'img=images/ramp.png&height=50%0A' => 400,
    );
    foreach ($refused as $query => $expected) {
        list($status, $headers, $body) = request($query);
        check($status === $expected && strpos($headers['content-type'] ?? '', 'text/plain') === 0
            && substr_count(trim($body), "\n") === 0 && !preg_match('/warning|fatal|notice|<b>/i', $body),
            "'$query' is refused with $expected (got $status: " . trim($body) . ')');
    }
    list($status, $headers) = request('img=images/ramp.png', 'POST');
    check($status === 405 && ($headers['allow'] ?? '') === 'GET, HEAD', 'POST is refused with 405');

    // --- caching ------------------------------------------------------------------------

    list($status, $headers) = request('img=images/ramp.png');
    $etag = $headers['etag'] ?? '';
    check($etag !== '' && isset($headers['last-modified']), 'ETag and Last-Modified are sent');
    list($status, , $body) = request('img=images/ramp.png', 'GET', array("If-None-Match: $etag"));
    check($status === 304 && $body === '', 'a matching ETag gets 304 without a body');
    list($status) = request('img=images/ramp.png', 'GET', array('If-None-Match: "other"'));
    check($status === 200, 'another ETag gets the picture');
    list($status) = request('img=images/ramp.png&height=60', 'GET', array("If-None-Match: $etag"));
    check($status === 200, 'the ETag depends on the parameters');
    list($status) = request('img=images/ramp.png', 'GET', array('If-Modified-Since: ' . $headers['last-modified']));
    check($status === 304, 'an unchanged picture since Last-Modified gets 304');
    foreach (array('Thu, 01 Jan 2099 00:00:00 GMT', '2099-01-01', 'tomorrow') as $since) {
        list($status) = request('img=images/ramp.png', 'GET', array("If-Modified-Since: $since"));
        check($status === 200, "If-Modified-Since '$since' (future or no HTTP date) is ignored");
    }
    list($status, $headers, $body) = request('img=images/ramp.png', 'HEAD');
    check($status === 200 && $body === '' && (int) $headers['content-length'] > 0, 'HEAD sends headers only');

    // --- bounded cost -------------------------------------------------------------------

    list($status, , $body) = request('img=images/large.png');
    $result = @imagecreatefromstring($body);
    check($status === 200 && $result && imagesx($result) === 1581 && imagesy($result) === 1581 + 791,
        'a 4-million-pixel picture is reflected at 2.5 million pixels');
    check(is_dir($cache) && (fileperms($cache) & 0777) === 0700 && count(glob("$cache/*.png")) >= 2,
        'finished reflections are kept in a private folder');
    list($status, , $again) = request('img=images/large.png');
    check($status === 200 && $again === $body, 'and served from there unchanged');
} finally {
    foreach (glob("$cache/*") ?: array() as $f) {
        @unlink($f);
    }
    @rmdir($cache);
    proc_terminate($server);
    proc_close($server);
    foreach (array_merge(glob("$root/images/nested/*"), glob("$root/images/*"), glob("$root/*"), glob("$outside/*")) as $f) {
        is_dir($f) && !is_link($f) ? @rmdir($f) : @unlink($f);
    }
    @rmdir("$root/images/nested");
    @rmdir("$root/images");
    @rmdir($root);
    @rmdir($outside);
}

echo "1..$count\n";
exit($failures === 0 ? 0 : 1);
