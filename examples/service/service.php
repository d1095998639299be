<?php
// A stand-in of the maker's web service, for PHP's own web server:
//   php -S 127.0.0.1:8080 examples/service/service.php
// It answers the update query on /version-update.php, and shows any other form as it was received.
// The path alone counts, so that it can be asked as a proxy too.
$path = parse_url($_SERVER['REQUEST_URI'], PHP_URL_PATH);
header('Content-Type: text/plain');

if ($path === '/version-update.php') {
    $newest = '5.2';
    $is_newest = (float)($_POST['version'] ?? 0) >= (float)$newest;
    echo "Version: $newest\n";
    echo "URL: http://www.morvane.example/download.html\n";
    echo "Button: " . ($is_newest ? 'Close' : 'Download') . "\n";
    echo "Message: " . ($_POST['product'] ?? '?') . ($is_newest
        ? " is up to date.\n"
        : " $newest is available; you have " . ($_POST['version_name'] ?? '?') . ".\n");
    return true;
}

echo "{$_SERVER['REQUEST_METHOD']} $path\n";
foreach ($_POST as $name => $value) {
    echo "$name=$value\n";
}
return true;
