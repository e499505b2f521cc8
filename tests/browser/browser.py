"""Chromium without a window, driven by its own protocol over two pipes."""
import base64
import json
import os
import shutil
import subprocess
import tempfile
import time


class Failure(Exception):
    """The browser refused a command, or a script threw."""


class Page:
    """One tab."""

    def __init__(self, width=1280, height=900):
        self._folder = tempfile.mkdtemp()
        to_browser, self._out = os.pipe()
        self._in, from_browser = os.pipe()
        options = ["--headless=new", "--remote-debugging-pipe", "--no-first-run", "--disable-gpu",
                   "--disable-dev-shm-usage", "--hide-scrollbars", "--force-color-profile=srgb",
                   "--user-data-dir=" + self._folder, "--window-size=%d,%d" % (width, height), "about:blank"]
        if os.geteuid() == 0:
            options.insert(0, "--no-sandbox")  # the sandbox refuses to run as root
        # The browser reads commands from descriptor 3 and writes to descriptor 4.
        redirection = 'exec "$@" 3<&%d 4>&%d' % (to_browser, from_browser)
        self._process = subprocess.Popen(["bash", "-c", redirection, "bash", "chromium", *options],
                                         pass_fds=(to_browser, from_browser), stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self._id = 0
        self._buffer = b""
        self._session = None
        self.problems = []  # exceptions, messages of the console, and requests other than for the page itself
        target = self._call("Target.createTarget", url="about:blank")["targetId"]
        self._session = self._call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self._call(domain + ".enable")
        self.resize(width, height)

    def close(self):
        os.close(self._out)
        os.close(self._in)
        self._process.terminate()
        self._process.wait()
        shutil.rmtree(self._folder, ignore_errors=True)

    def open(self, path, fragment=""):
        """Opens a file; returns after it said that it is ready, with the milliseconds that this took."""
        self._call("Page.navigate", url="about:blank")
        self._call("Page.navigate", url="file://" + path + fragment)
        self.wait("location.protocol === 'file:' && document.documentElement?.dataset.ready === 'true'")
        return self.value("performance.getEntriesByName('ready')[0].startTime")

    def value(self, expression):
        result = self._call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise Failure(result["exceptionDetails"]["exception"].get("description", "exception"))
        return result["result"].get("value")

    def wait(self, condition, seconds=20):
        end = time.monotonic() + seconds
        while not self.value(condition):
            if time.monotonic() > end:
                raise Failure("never true: " + condition)
            time.sleep(0.01)

    def press(self, *keys):
        """Presses keys, one after the other: "Tab", "ArrowDown", or one character."""
        codes = {"Tab": 9, "Enter": 13, "Escape": 27, "End": 35, "Home": 36, "ArrowLeft": 37, "ArrowUp": 38,
                 "ArrowRight": 39, "ArrowDown": 40}
        for key in keys:
            text = {"text": "\r" if key == "Enter" else key} if key not in codes or key == "Enter" else {}
            code = codes.get(key, ord(key[0].upper()))
            self._call("Input.dispatchKeyEvent", type="keyDown", key=key, windowsVirtualKeyCode=code, **text)
            self._call("Input.dispatchKeyEvent", type="keyUp", key=key, windowsVirtualKeyCode=code)

    def type(self, text):
        self._call("Input.insertText", text=text)

    def point_at(self, selector):
        x, y = self.value("""(() => {
            const element = document.querySelector(%s);
            element.scrollIntoView({ block: 'center', behavior: 'instant' });
            const box = element.getBoundingClientRect();
            return [box.left + box.width / 2, box.top + box.height / 2];
        })()""" % json.dumps(selector))
        self._call("Input.dispatchMouseEvent", type="mouseMoved", x=x, y=y)

    def resize(self, width, height, scale=1):
        self._call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale,
                   mobile=False)

    def emulate(self, scheme="light", media=""):
        """Chooses light or dark, and the screen or print."""
        self._call("Emulation.setEmulatedMedia", media=media,
                   features=[{"name": "prefers-color-scheme", "value": scheme},
                             {"name": "prefers-reduced-motion", "value": "reduce"}])

    def screenshot(self, file, whole=False):
        picture = self._call("Page.captureScreenshot", format="png", captureBeyondViewport=whole)
        with open(file, "wb") as output:
            output.write(base64.b64decode(picture["data"]))

    # The protocol: JSON texts that end with a NUL byte.

    def _call(self, method, **parameters):
        self._id += 1
        message = {"id": self._id, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._out, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._receive()
            if answer.get("id") == self._id:
                if "error" in answer:
                    raise Failure(method + ": " + answer["error"]["message"])
                return answer["result"]
            self._note(answer)

    def _receive(self):
        while b"\0" not in self._buffer:
            received = os.read(self._in, 1 << 20)
            if not received:
                raise Failure("the browser has gone")
            self._buffer += received
        message, self._buffer = self._buffer.split(b"\0", 1)
        return json.loads(message)

    def _note(self, event):
        method = event.get("method")
        parameters = event.get("params", {})
        if method == "Runtime.exceptionThrown":
            self.problems.append(parameters["exceptionDetails"]["exception"].get("description", "exception"))
        elif method == "Log.entryAdded":
            self.problems.append(parameters["entry"]["text"])
        elif method == "Network.requestWillBeSent" and not parameters["request"]["url"].startswith(("file:", "about:")):
            self.problems.append("request of " + parameters["request"]["url"])
