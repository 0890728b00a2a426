<?php
/*
 * reflect.php - part of the Slidewave gallery.
 *
 * Returns a picture with a mirrored, fading reflection below it, as a PNG
 * with an alpha channel, so the reflection fades into whatever background
 * the gallery has. The gallery page asks for it as
 *
 *     reflect.php?img=images/photo.jpg
 *
 * where img names a picture in this script's folder or below it, exactly as
 * the page names it (the published page writes "images/name.jpg").
 *
 * Optional parameters:
 *     height  reflection height in percent of the picture's height (10-100, default 50)
 *     fade    opacity of the reflection's first row in percent   (0-100, default 50)
 *
 * Safety: only picture files (jpg, jpeg, png, gif, webp) in this folder or
 * below are read. "..", absolute paths, drive letters, back slashes, URLs
 * and stream wrappers ("php://", "data:" ...) are refused, and so is a name
 * that leads outside this folder through a symbolic link. Pictures above
 * the pixel budget are refused before they are decoded.
 * Every refusal is a 4xx status with a one-line plain text reason, never
 * a PHP error message.
 *
 * Cost: a picture of more than 2.5 million pixels is scaled down before it
 * is reflected (the gallery shows it smaller anyway), and the reflection is
 * made row by row by GD, so one request costs a bounded amount of time.
 * Finished reflections are kept in a private folder under the system's
 * temporary folder (at most 256 MB; the oldest go first), so asking again
 * costs no work.
 *
 * Caching: the response carries Last-Modified and an ETag made from the
 * picture's path, size, time and the parameters; a matching If-None-Match
 * (or else an If-Modified-Since holding a valid HTTP date that is not in the
 * future) gets "304 Not Modified" at once.
 *
 * Needs PHP 7.0 or newer with the GD extension. Without GD the script
 * answers "501 Not Implemented"; the gallery script then shows the original
 * picture and draws the reflection itself.
 */

// Never let a notice or warning reach the picture data.
ini_set('display_errors', '0');
header_remove('X-Powered-By');
error_reporting(E_ALL);
set_error_handler(function ($severity, $message) {
    throw new ErrorException($message, 0, $severity);
});

const SLIDEWAVE_REFLECT_VERSION = '1.0';

// The largest picture (width x height) decoded: 16 million pixels, e.g. a
// 4900 x 3265 photo. GD keeps about five bytes per pixel and the result is
// up to twice as tall, which stays well inside 256 MB.
const MAX_PIXELS = 16000000;

// Larger pictures are scaled down to this many pixels before reflecting.
const MAX_REFLECTED_PIXELS = 2500000;

// The most the folder of finished reflections may hold.
const CACHE_BYTES = 268435456;

// Picture types and the file name extensions that may carry them.
const ALLOWED_TYPES = array(
    'jpg'  => IMAGETYPE_JPEG,
    'jpeg' => IMAGETYPE_JPEG,
    'png'  => IMAGETYPE_PNG,
    'gif'  => IMAGETYPE_GIF,
    'webp' => 18, // IMAGETYPE_WEBP, not defined before PHP 7.1
);

/** Ends the request with an error status and a one-line plain text reason. */
function refuse($status, $reason)
{
    $texts = array(
        400 => 'Bad Request', 403 => 'Forbidden', 404 => 'Not Found',
        405 => 'Method Not Allowed', 413 => 'Payload Too Large',
        415 => 'Unsupported Media Type', 500 => 'Internal Server Error',
        501 => 'Not Implemented',
    );
    if (!headers_sent()) {
        header(sprintf('HTTP/1.1 %d %s', $status, $texts[$status]), true, $status);
        header('Content-Type: text/plain; charset=utf-8');
        header('Cache-Control: no-store');
        header('X-Content-Type-Options: nosniff');
        if ($status === 405) {
            header('Allow: GET, HEAD');
        }
    }
    echo $reason, "\n";
    exit;
}

/**
 * An integer query parameter within [min, max], or the default when it is
 * absent. Anything else is a bad request.
 */
function integer_parameter($name, $default, $min, $max)
{
    if (!isset($_GET[$name]) || $_GET[$name] === '') {
        return $default;
    }
    $text = $_GET[$name];
    if (!is_string($text) || !preg_match('/\A[0-9]{1,3}\z/', $text)) {
        refuse(400, "$name must be a whole number");
    }
    $value = (int) $text;
    if ($value < $min || $value > $max) {
        refuse(400, "$name must be between $min and $max");
    }
    return $value;
}

/**
 * Checks the requested name and returns the picture's real path and its
 * extension. Refuses everything that is not a picture file in this folder
 * or below.
 */
function resolve_picture($name)
{
    if (!is_string($name) || $name === '') {
        refuse(400, 'img names no picture');
    }
    if (strlen($name) > 1024) {
        refuse(400, 'img is too long');
    }
    // Control characters (NUL cuts names short), back slashes and colons
    // (drive letters, "php:", "data:", "http:") never occur in a published
    // picture name.
    if (preg_match('/[\x00-\x1f\x7f\\\\:]/', $name)) {
        refuse(400, 'img contains characters that a picture name cannot have');
    }
    if ($name[0] === '/' || strpos($name, '//') !== false) {
        refuse(403, 'img must be a path relative to the gallery');
    }
    foreach (explode('/', $name) as $part) {
        if ($part === '..' || $part === '.' || $part === '') {
            refuse(403, 'img must not leave the gallery folder');
        }
    }
    $extension = strtolower(pathinfo($name, PATHINFO_EXTENSION));
    if (!isset(ALLOWED_TYPES[$extension])) {
        refuse(415, 'img must be a jpg, jpeg, png, gif or webp picture');
    }

    $base = realpath(__DIR__);
    $path = realpath($base . DIRECTORY_SEPARATOR . str_replace('/', DIRECTORY_SEPARATOR, $name));
    if ($path === false || !is_file($path)) {
        refuse(404, 'no such picture');
    }
    // A symbolic link may still lead elsewhere: the real path must lie
    // inside this folder.
    if (strncmp($path, $base . DIRECTORY_SEPARATOR, strlen($base) + 1) !== 0) {
        refuse(403, 'img must not leave the gallery folder');
    }
    if (!is_readable($path)) {
        refuse(403, 'the picture cannot be read');
    }
    return array($path, $extension);
}

/** Answers 304 when the client's copy is current. */
function answer_if_unchanged($etag, $modified)
{
    $match = isset($_SERVER['HTTP_IF_NONE_MATCH']) ? $_SERVER['HTTP_IF_NONE_MATCH'] : null;
    if ($match !== null) {
        // The header may list several tags, or "*"; weak tags match too.
        foreach (explode(',', $match) as $tag) {
            $tag = trim($tag);
            if ($tag === '*' || preg_replace('/^W\//', '', $tag) === $etag) {
                header('HTTP/1.1 304 Not Modified', true, 304);
                exit;
            }
        }
        return;
    }
    if (isset($_SERVER['HTTP_IF_MODIFIED_SINCE'])) {
        // Only an HTTP date as servers write it, and not one in the future
        // (a client's clock ahead must not freeze an edited picture).
        $text = $_SERVER['HTTP_IF_MODIFIED_SINCE'];
        $date = DateTime::createFromFormat('!D, d M Y H:i:s \G\M\T', $text, new DateTimeZone('UTC'));
        $since = $date === false ? false : $date->getTimestamp();
        $valid = $since !== false && gmdate('D, d M Y H:i:s \G\M\T', $since) === $text && $since <= time();
        if ($valid && $since >= $modified) {
            header('HTTP/1.1 304 Not Modified', true, 304);
            exit;
        }
    }
}

/** Decodes the picture into a true-colour image with an alpha channel. */
function load_picture($path, $type)
{
    switch ($type) {
        case IMAGETYPE_JPEG: $image = imagecreatefromjpeg($path); break;
        case IMAGETYPE_PNG:  $image = imagecreatefrompng($path); break;
        case IMAGETYPE_GIF:  $image = imagecreatefromgif($path); break;
        default:
            if (!function_exists('imagecreatefromwebp')) {
                refuse(415, 'this server cannot read webp pictures');
            }
            $image = imagecreatefromwebp($path);
    }
    if ($image === false) {
        refuse(415, 'the picture cannot be decoded');
    }
    if (!imageistruecolor($image)) {
        imagepalettetotruecolor($image);
    }
    return $image;
}

/** A true-colour image of the given size that keeps an alpha channel. */
function transparent_canvas($width, $height)
{
    $image = imagecreatetruecolor($width, $height);
    imagealphablending($image, false);
    imagesavealpha($image, true);
    imagefill($image, 0, 0, imagecolorallocatealpha($image, 0, 0, 0, 127));
    return $image;
}

/** The picture, scaled down to MAX_REFLECTED_PIXELS when it is larger. */
function bounded_picture($picture)
{
    $width = imagesx($picture);
    $height = imagesy($picture);
    if ($width * $height <= MAX_REFLECTED_PIXELS) {
        return $picture;
    }
    $scale = sqrt(MAX_REFLECTED_PIXELS / ($width * $height));
    $w = max(1, (int) floor($width * $scale));
    $h = max(1, (int) floor($height * $scale));
    $smaller = transparent_canvas($w, $h);
    imagecopyresampled($smaller, $picture, 0, 0, 0, 0, $w, $h, $width, $height);
    imagedestroy($picture);
    return $smaller;
}

/**
 * The picture with its reflection below: the lowest rows mirrored, the
 * first reflected row at the given opacity and the last one transparent.
 * Each row is faded as a whole by GD (its alpha raised by the same amount),
 * so the work per row is one copy and one filter.
 */
function reflect($picture, $heightPercent, $fadePercent)
{
    $width = imagesx($picture);
    $height = imagesy($picture);
    $rows = max(1, (int) round($height * $heightPercent / 100));

    $result = transparent_canvas($width, $height + $rows);
    imagecopy($result, $picture, 0, 0, 0, 0, $width, $height);
    $row = transparent_canvas($width, 1);

    $start = $fadePercent / 100;
    for ($y = 0; $y < $rows; $y++) {
        $source = $height - 1 - $y;
        // Opacity falls off with the square of the distance: a softer,
        // more natural fade than a straight line.
        $t = $y / $rows;
        $opacity = $start * (1 - $t) * (1 - $t);
        if ($opacity <= 0.004) {
            continue; // fully transparent: the background fill is right
        }
        // GD's alpha runs from 0 (opaque) to 127 (transparent).
        imagecopy($row, $picture, 0, 0, 0, $source, $width, 1);
        imagefilter($row, IMG_FILTER_COLORIZE, 0, 0, 0, 127 - (int) round(127 * $opacity));
        imagecopy($result, $row, 0, $height + $y, 0, 0, $width, 1);
    }
    imagedestroy($row);
    return $result;
}

/**
 * The private folder of finished reflections (made on first use, readable
 * by this user only), or null when there is none to be had.
 */
function cache_folder()
{
    $folder = sys_get_temp_dir() . DIRECTORY_SEPARATOR . 'slidewave-reflect-' . sha1(__DIR__);
    try {
        if (!is_dir($folder)) {
            mkdir($folder, 0700);
        }
    } catch (ErrorException $e) {
        // Another request made it first, or the folder cannot be made.
    }
    if (is_link($folder) || !is_dir($folder) || !is_writable($folder) || (fileperms($folder) & 0077) !== 0) {
        return null;
    }
    return $folder;
}

/** Keeps a finished reflection, then trims the folder to CACHE_BYTES, oldest first. */
function remember($folder, $file, $png)
{
    try {
        $temporary = tempnam($folder, 'part');
        file_put_contents($temporary, $png);
        rename($temporary, $file);
        $files = glob($folder . DIRECTORY_SEPARATOR . '*.png');
        $total = 0;
        $ages = array();
        foreach ($files as $f) {
            $total += filesize($f);
            $ages[$f] = filemtime($f);
        }
        asort($ages);
        foreach ($ages as $f => $age) {
            if ($total <= CACHE_BYTES) {
                break;
            }
            $total -= filesize($f);
            unlink($f);
        }
    } catch (ErrorException $e) {
        // A reflection that cannot be kept is made again next time.
    }
}

// --- the request ------------------------------------------------------------

$method = isset($_SERVER['REQUEST_METHOD']) ? $_SERVER['REQUEST_METHOD'] : 'GET';
if ($method !== 'GET' && $method !== 'HEAD') {
    refuse(405, 'only GET and HEAD are answered');
}
if (!isset($_GET['img']) || is_array($_GET['img'])) {
    refuse(400, 'img names no picture');
}

list($path, $extension) = resolve_picture($_GET['img']);
$heightPercent = integer_parameter('height', 50, 10, 100);
$fadePercent = integer_parameter('fade', 50, 0, 100);

try {
    $info = getimagesize($path);
} catch (ErrorException $e) {
    $info = false;
}
if ($info === false) {
    refuse(415, 'the file is not a picture');
}
list($width, $height, $type) = $info;
if ($type !== ALLOWED_TYPES[$extension]) {
    refuse(415, 'the picture is not what its name says');
}
if ($width < 1 || $height < 1) {
    refuse(415, 'the picture is empty');
}
if ($width * $height > MAX_PIXELS) {
    refuse(413, sprintf('the picture has more than %d pixels', MAX_PIXELS));
}
if (!function_exists('imagecreatetruecolor')) {
    refuse(501, 'this server has no GD extension');
}

$modified = filemtime($path);
$etag = '"' . sha1(implode('|', array(
    SLIDEWAVE_REFLECT_VERSION, $path, filesize($path), $modified, $heightPercent, $fadePercent,
))) . '"';

header('Cache-Control: public, max-age=86400');
header('Last-Modified: ' . gmdate('D, d M Y H:i:s', $modified) . ' GMT');
header('ETag: ' . $etag);
answer_if_unchanged($etag, $modified);

$folder = cache_folder();
$kept = $folder === null ? null : $folder . DIRECTORY_SEPARATOR . sha1($etag) . '.png';
try {
    $png = $kept !== null && is_file($kept) && !is_link($kept) ? file_get_contents($kept) : false;
    if ($png === false) {
        $picture = bounded_picture(load_picture($path, $type));
        $result = reflect($picture, $heightPercent, $fadePercent);
        imagedestroy($picture);

        // Encode first, send afterwards: a failure must not leave half a picture.
        ob_start();
        imagepng($result, null, 6);
        $png = ob_get_clean();
        imagedestroy($result);
        if ($kept !== null) {
            remember($folder, $kept, $png);
        }
    }
} catch (Throwable $e) {
    while (ob_get_level() > 0) {
        ob_end_clean();
    }
    refuse(500, 'the reflection could not be made');
}

header('Content-Type: image/png');
header('Content-Length: ' . strlen($png));
header('X-Content-Type-Options: nosniff');
if ($method !== 'HEAD') {
    echo $png;
}
