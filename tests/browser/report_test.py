#!/usr/bin/env python3
"""Opens the page of `kxdu report` in Chromium without a window, and uses it as a person does.
    report_test.py KXDU FOLDER          FOLDER gets the screenshots
"""
import json
import os
import subprocess
import sys
import tempfile
import unittest

from browser import Page

KXDU = os.path.abspath(sys.argv[1])
SCREENSHOTS = os.path.abspath(sys.argv[2])
HOSTILE = "</script><script>window.hacked = 1</script><img src=x onerror='window.hacked = 1'>&amp;\"'"

page = None
folder = None


def kxdu(*arguments):
    ended = subprocess.run([KXDU, *arguments], cwd=folder, capture_output=True, encoding="utf-8", check=False,
                           env={**os.environ, "LC_ALL": "C.UTF-8", "KX_INVENTORY": "", "KX_CONFIG_DIR": ""})
    if ended.returncode != 0:
        raise AssertionError("kxdu %s: %s" % (" ".join(arguments), ended.stderr))
    return ended.stdout


def write(name, lines):
    with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
        file.writelines(line + "\n" for line in lines)


def read(name):
    with open(os.path.join(folder, name), encoding="utf-8") as file:
        return file.read().splitlines()


def setUpModule():
    global page, folder
    os.makedirs(SCREENSHOTS, exist_ok=True)
    folder = tempfile.mkdtemp()
    kxdu("sample", "--ne", "2000", "-o", "network.fdn", "--inventory-csv", "network")
    kxdu("inventory", "init", "network.db")
    kxdu("inventory", "import", "network.db", "network")
    ports = [fdn for fdn in read("network.fdn") if fdn.split(",")[-1].startswith("PP=")]
    in_shelf = [fdn for fdn in ports if fdn.startswith("NE=340,FR=2,")]
    write("alarms.tsv", ["major\t" + fdn for fdn in ports[::40] + 60 * in_shelf[3:4] + 3 * in_shelf[5:6]])
    kxdu("report", "network.fdn", "--inventory", "network.db", "--alarms", "alarms.tsv", "--alarm-fdn", "1",
         "-o", "report.html")
    page = Page()
    page.emulate("light")


def tearDownModule():
    page.close()


def texts(selector):
    return page.value("[...document.querySelectorAll(%s)].map((element) => element.textContent)" % json.dumps(selector))


def bars(card):
    """The bars of a card: pairs of label and number."""
    labels = texts("#%s .bar-row > :first-child" % card)
    numbers = [int(text.replace(",", "")) for text in texts("#%s .bar-row .number" % card)]
    return list(zip(labels, numbers))


def counts(what):
    rows = [json.loads(line) for line in
            kxdu("stats", "network.fdn", "--inventory", "network.db", "--by", what, "--format", "jsonl").splitlines()]
    return [(row["value"], row["name"], row["count"]) for row in rows]


def open_page(file="report.html", fragment=""):
    page.problems.clear()
    return page.open(os.path.join(folder, file), fragment)


class Network(unittest.TestCase):
    """A network of 2,000 NEs."""

    @classmethod
    def setUpClass(cls):
        cls.milliseconds = min(open_page() for _ in range(3))

    def test_is_small_and_opens_soon(self):
        self.assertLess(os.path.getsize(os.path.join(folder, "report.html")), 12_000_000)
        self.assertLess(self.milliseconds, 1000)

    def test_numbers_are_those_of_stats(self):
        totals = {value: count for value, _, count in counts("total")}
        shown = [int(text.replace(",", "")) for text in texts("#totals strong")]
        self.assertEqual([shown[0], shown[2], shown[3]],
                         [totals["different NEs"], totals["lines"], totals["lines with a problem"]])
        self.assertEqual(bars("count-kind"), [(value, count) for value, _, count in counts("kind")])
        self.assertEqual(bars("count-family"), [(value or "no family", count) for value, _, count in counts("family")])
        self.assertEqual(bars("count-layer"), [(value or "no layer", count) for value, _, count in counts("layer")])
        self.assertEqual([count for _, count in bars("count-ne-type")], [count for _, _, count in counts("ne-type")])
        self.assertEqual([count for _, count in bars("count-level")], [count for _, _, count in counts("level")])
        self.assertEqual([count for _, count in bars("count-fb-type")], [count for _, _, count in counts("fb-type")])

    def test_shows_where_the_alarms_are(self):
        self.assertEqual(bars("alarm-shelves")[0][0], "NE 340, shelf 2")
        self.assertGreaterEqual(bars("alarm-shelves")[0][1], 63)
        self.assertTrue(bars("alarm-nes")[0][0].startswith("NE 340 "))

    def test_names_nes_without_ports(self):
        with_ports = {fdn.split(",")[0] for fdn in read("network.fdn") if fdn.split(",")[-1][:3] in ("PP=", "LP=")}
        nes = {fdn for fdn in read("network.fdn") if fdn.startswith("NE=") and "," not in fdn}
        expected = {fdn.replace("=", " ") for fdn in nes - with_ports}
        self.assertEqual(set(texts("#without-ports .links a")), expected)

    def test_finds_an_ne_by_keyboard_and_shows_what_a_port_means(self):
        open_page()
        page.press("/")
        page.type("34")
        self.assertEqual(page.value("document.querySelector('#found [aria-selected=true]').textContent.slice(0, 6)"), "NE 34 ")
        page.press("ArrowDown", "Enter")
        self.assertEqual(texts("#ne-title"), ["NE 340"])
        self.assertEqual(page.value("location.hash"), "#ne=340")
        page.press("Tab", "Tab", "ArrowDown")  # past the colours, into the first shelf
        fdn = page.value("document.activeElement.dataset.fdn")
        self.assertIn(",PP=", fdn)
        self.check_meaning(fdn)
        page.press("ArrowRight")
        other = page.value("document.activeElement.dataset.fdn")
        self.assertNotEqual(other, fdn)
        self.check_meaning(other)

    def check_meaning(self, fdn):
        self.assertEqual(texts("#detail .identifier"), [fdn])
        shown = texts("#detail td:last-child")
        drawing = kxdu("explain", fdn, "--inventory", "network.db").split("\n\n")[0].splitlines()
        meanings = [line.split("─ ", 1)[1] for line in drawing if "─ " in line]
        self.assertEqual(sorted(meaning for meaning in shown if not meaning.startswith("interface level")),
                         sorted(meanings), fdn)

    def test_every_kind_is_explained_as_by_kxdu(self):
        open_page(fragment="#ne=340")
        page.value("document.querySelectorAll('#beside details').forEach((details) => { details.open = true; })")
        page.wait("document.querySelectorAll('#beside details:has(ul)').length === document.querySelectorAll('#beside details').length")
        fdns = page.value("[...document.querySelectorAll('#beside [data-fdn]')].map((element) => element.dataset.fdn)")
        by_tag = {fdn.rpartition(",")[2].partition("=")[0]: fdn for fdn in fdns}
        self.assertGreater(len(by_tag), 8)
        for fdn in by_tag.values():
            page.value("document.querySelector('#beside [data-fdn=\"' + CSS.escape(%s) + '\"]').click()" % json.dumps(fdn))
            self.check_meaning(fdn)

    def test_meaning_stays_in_sight_of_every_list(self):
        for width in (1280, 390):
            page.resize(width, 844)
            open_page(fragment="#ne=340")
            page.value("document.querySelector('#beside details:last-child').open = true")
            page.wait("document.querySelector('#beside details:last-child button') !== null")
            page.point_at("#beside details:last-child button")
            in_sight = page.value("""(() => {
                const box = document.querySelector('#detail .identifier').getBoundingClientRect();
                return box.top >= 0 && box.bottom <= innerHeight;
            })()""")
            self.assertTrue(in_sight, width)
        page.resize(1280, 900)

    def test_pointing_at_a_port_shows_its_meaning(self):
        open_page(fragment="#ne=340")
        page.point_at("#shelves .port")
        fdn = page.value("document.querySelector('#shelves .port').dataset.fdn")
        self.check_meaning(fdn)

    def test_finds_nes_by_type_name_and_identifier(self):
        for text, expected in (("core router", "Core router"), ("Lyon Part-Dieu", "Lyon Part-Dieu"),
                               ("NE=77,FR=1", "NE 77 ")):
            page.value("document.activeElement.blur(), document.getElementById('query').value = ''")
            page.press("/")
            page.type(text)
            self.assertIn(expected, texts("#found li")[0])
            page.press("Escape")

    def test_draws_every_port_once(self):
        open_page(fragment="#ne=340")
        drawn = page.value("[...document.querySelectorAll('#shelves .port')].map((port) => port.dataset.fdn)")
        expected = [fdn for fdn in read("network.fdn") if fdn.startswith("NE=340,") and fdn.split(",")[-1][:3] == "PP="]
        self.assertEqual(sorted(drawn), sorted(expected))

    def tearDown(self):
        self.assertEqual(page.problems, [])


class Hostile(unittest.TestCase):
    """Identifiers that hold markup and scripts."""

    def test_is_text_wherever_it_is_shown(self):
        write("hostile.fdn", ["NE=1", "NE=1,FR=1,S=1,CP=-1,PP=||1|" + HOSTILE, "NE=1,LP=||2|" + HOSTILE,
                              "NE=1," + HOSTILE + "=1", "NE=1,MD=1|" + HOSTILE, "NE=1,FR=1,S=" + HOSTILE])
        write("hostile.tsv", ["NE=1,FR=1,S=1,CP=-1,PP=||1|" + HOSTILE, HOSTILE])
        kxdu("report", "hostile.fdn", "--levels-only", "--alarms", "hostile.tsv", "--alarm-fdn", "0", "-o", "hostile.html")
        open_page("hostile.html")
        page.value("document.querySelectorAll('details').forEach((details) => { details.open = true; })")
        page.wait("document.querySelectorAll('#beside ul').length > 0")
        page.point_at("#shelves .port")
        self.assertIn(HOSTILE, texts("#detail .identifier")[0])
        page.press("/")
        page.type("</script>")
        self.assertIn("</script>", texts("#found li")[0])
        self.assertEqual(page.value("document.querySelectorAll('img, main script').length"), 0)
        self.assertIsNone(page.value("window.hacked ?? null"))
        self.assertEqual(page.problems, [])


class Odd(unittest.TestCase):
    """Networks with little in them."""

    def test_nothing(self):
        write("odd.fdn", [])
        kxdu("report", "odd.fdn", "-o", "odd.html")
        open_page("odd.html")
        self.assertEqual(texts("#totals strong"), ["0", "0", "0", "0"])
        self.assertEqual(texts("#problems p"), ["There is no identifier."])
        self.assertEqual(page.problems, [])

    def test_no_ne(self):
        write("odd.fdn", ["OS=1", "NE=x"])
        kxdu("report", "odd.fdn", "--levels-only", "-o", "odd.html")
        open_page("odd.html")
        self.assertEqual(texts("#totals strong"), ["0", "0", "2", "1"])
        self.assertEqual(texts("#without-ports p"), ["No identifier is of an NE."])
        self.assertEqual(texts("#ne-title"), ["No NE"])
        self.assertEqual(texts("#ne-about"), ["No identifier is of an NE. So there is nothing to draw."])
        page.resize(700, 900)
        page.resize(1280, 900)
        self.assertEqual(page.problems, [])

    def test_an_address_of_an_ne_that_the_file_lacks(self):
        write("odd.fdn", ["NE=3,FR=1"])
        kxdu("report", "odd.fdn", "--levels-only", "-o", "odd.html")
        for ne in ("4", "x"):
            open_page("odd.html", "#ne=" + ne)
            self.assertEqual(texts("#ne-title"), ["NE " + ne])
            self.assertIn("The page shows no NE " + ne, texts("#ne-about")[0])
            self.assertFalse(page.value("document.getElementById('colours').checkVisibility()"))
        page.value("void (location.hash = '#ne=3')")
        page.wait("document.getElementById('ne-title').textContent === 'NE 3'")
        self.assertTrue(page.value("document.getElementById('colours').checkVisibility()"))
        self.assertEqual(page.problems, [])

    def test_an_escaped_bar_is_part_of_the_name(self):
        write("odd.fdn", ["NE=4,FR=1,S=1,CP=-1,PP=16|1025|1|a\\|b", "NE=4,FR=1,S=1,CP=-1,PP=16|810|2|c\\|d"])
        kxdu("report", "odd.fdn", "--levels-only", "-o", "odd.html")
        open_page("odd.html")
        shown = []
        for port in ("first", "last"):
            page.value("[...document.querySelectorAll('#shelves .port')].at(%d).dispatchEvent("
                       "new MouseEvent('click', { bubbles: true }))" % (0 if port == "first" else -1))
            shown.append([text for text in texts("#detail td:last-child") if "name" in text or "sub-value" in text])
        self.assertEqual(shown, [['port name "a|b"'], ['port name "c\\"', 'sub-value "d"']])
        self.assertIn("port 1, a|b;", page.value("document.querySelector('#shelves .port').getAttribute('aria-label')"))
        self.assertEqual(page.problems, [])

    def test_things_without_shelves_and_numbers(self):
        write("odd.fdn", ["OS=1", "NE=3", "NE=4,PP=||4294967295|", "NE=4,S=2,PP=||1|x", "NE=4,FR=1,S=99999,CP=-1",
                          "NE=4,FR=x,S=,PP=1|2|3|4", "NE=4,PP=1", "NE=4,"])
        kxdu("report", "odd.fdn", "--levels-only", "-o", "odd.html")
        for ne in (3, 4):
            open_page("odd.html", "#ne=%d" % ne)
            self.assertEqual(texts("#ne-title"), ["NE %d" % ne])
        self.assertEqual(len(texts("#shelves .port")), 4)
        self.assertEqual(page.problems, [])


class Look(unittest.TestCase):
    """Screenshots, to be looked at; and nothing is wider than the window."""

    def test_screenshots(self):
        for name, width, scheme, media in (("light", 1280, "light", ""), ("dark", 1280, "dark", ""),
                                           ("narrow", 390, "light", ""), ("print", 800, "dark", "print")):
            with self.subTest(name):
                page.resize(width, 900)
                page.emulate(scheme, media)
                open_page(fragment="#ne=340")
                self.assertLessEqual(page.value("document.documentElement.scrollWidth"), width)
                page.screenshot(os.path.join(SCREENSHOTS, name + ".png"), whole=True)
                page.point_at("#shelves .port")
                page.screenshot(os.path.join(SCREENSHOTS, name + "-ne.png"))
        page.resize(1280, 900)
        page.emulate("light")


if __name__ == "__main__":
    result = unittest.main(argv=sys.argv[:1], exit=False, verbosity=1).result
    bad = len(result.failures) + len(result.errors)
    print("%d passed, %d failed" % (result.testsRun - bad, bad))
    sys.exit(bad > 0 or result.testsRun == 0)
