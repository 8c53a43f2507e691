"""Bad sources that the checks must find, and good ones that they must leave alone."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "scripts"))

from checks import includes, sizes  # noqa: E402

LOGIC = "target_sources(vantle_logic PRIVATE a.cpp b.cpp)\n"


class IncludeRules(unittest.TestCase):
    def problems(self, files):
        with tempfile.TemporaryDirectory() as root:
            for name, text in files.items():
                path = Path(root) / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return list(includes.problems(root))

    def assert_one(self, files, words):
        found = self.problems(files)
        self.assertEqual(len(found), 1, found)
        self.assertIn(words, found[0])

    def test_downwards_is_fine(self):
        self.assertEqual(
            self.problems(
                {
                    "base/job.h": "#include <QObject>\n",
                    "platform/sounds.h": '#include "base/job.h"\n',
                    "platform/xdg/entry.h": "",
                    "platform/x11/backend.cpp": '#include "platform/xdg/entry.h"\n',
                    "core/tools/tool.h": '#include "platform/sounds.h"\n',
                    "tools/keystrokes/sender.h": '#include "core/tools/tool.h"\n',
                    "tools/one/a.h": '#include "tools/keystrokes/sender.h"\n',
                    "tools/one/a.cpp": '#include "tools/one/a.h"\n#include "a.moc"\n',
                    "tools/one/CMakeLists.txt": LOGIC,
                }
            ),
            [],
        )

    def test_one_include_that_is_wrong(self):
        for header, source, include, words in (
            ("core/net/a.h", "base/b.h", "core/net/a.h", "must not include core/net/a.h"),
            ("tools/one/a.h", "tools/two/b.h", "tools/one/a.h", "another tool"),
            ("platform/x11/a.h", "core/net/b.h", "platform/x11/a.h", "(backend)"),
            ("platform/x11/a.h", "platform/mac/b.h", "platform/x11/a.h", "platform/x11"),
            ("base/a.h", "base/b.h", "../base/a.h", "goes up"),
            ("base/a.h", "base/b.h", "a.h", "not below src/"),
        ):
            with self.subTest(words):
                self.assert_one({header: "", source: f'#include "{include}"\n'}, words)
        self.assert_one(
            {"core/ui/a.h": "#include <QWidget>\n", "core/net/b.h": '#include "core/ui/a.h"\n'}, "core/ui/a.h (core/ui)"
        )
        self.assert_one({"misc/a.h": ""}, "no place")

    def test_widgets_in_logic_even_through_a_header(self):
        files = {
            "tools/one/CMakeLists.txt": LOGIC,
            "tools/one/a.cpp": '#include "tools/one/deep.h"\n',
            "tools/one/deep.h": '#include "tools/one/deeper.h"\n',
            "tools/one/deeper.h": "#include <QListView>\n",
        }
        self.assertTrue(any("<QListView>" in line for line in self.problems(files)))

    def test_condition_on_the_system(self):
        self.assert_one({"core/net/a.h": "int a;\n#ifdef Q_OS_MACOS\n#endif\n"}, "a.h:2: a condition")
        self.assertEqual(self.problems({"platform/a.h": "#if defined(__APPLE__)\n#endif\n"}), [])

    def test_cycle_of_folders(self):
        files = {
            "core/x/a.h": '#include "core/y/b.h"\n',
            "core/y/b.h": '#include "core/z/c.h"\n',
            "core/z/c.h": '#include "core/x/d.h"\n',
            "core/x/d.h": '#include "core/x/e.h"\n',
            "core/x/e.h": "",
        }
        self.assert_one(files, "core/x, core/y, core/z")
        leaf = files | {"core/x/d.h": '#include "base/f.h"\n', "base/f.h": ""}
        self.assertEqual(self.problems(leaf), [])


class SizeLimits(unittest.TestCase):
    def functions(self, text):
        return {function.name: function for function in sizes.functions(text)}

    def test_long_function(self):
        text = "int longOne(int a) {\n" + "  ++a;\n" * 50 + "}\n"
        self.assertEqual(self.functions(text)["longOne"].lines, 52)
        self.assertEqual(len(list(sizes.problems("src/a.cpp", text))), 1)
        self.assertEqual(list(sizes.problems("src/a.cpp", text.replace("  ++a;\n", "", 2))), [])

    def test_nesting_counts_statements_and_not_lambdas_or_initialisers(self):
        text = """
        namespace a { class B : public C {
          B(int x) : x_{x}, y_(2) { if (x) { for (;;) { while (x) { switch (x) { case 1: { x = 2; } } } } } }
          void flat() { auto f = [this](int a) { return Pair{a, {1, 2}}; }; if (true) { f(1); } else { f(2); } }
        }; }
        """
        self.assertEqual(self.functions(text)["B"].nesting, 4)
        self.assertEqual(self.functions(text)["flat"].nesting, 1)

    def test_parameters_of_templates_count_once(self):
        text = """
        void six(int a, int b, int c, int d, int e, int f) {}
        std::map<int, int> one(const std::map<int, std::pair<int, int>>& m) { return {}; }
        """
        self.assertEqual(self.functions(text)["six"].parameters, 6)
        self.assertEqual(self.functions(text)["one"].parameters, 1)

    def test_braces_in_strings_and_comments(self):
        text = 'void f() {\n  // {{{\n  use("}", R"x(}{)x", \'{\', 1\'000);\n}\nvoid g() {}\n'
        self.assertEqual(set(self.functions(text)), {"f", "g"})
        self.assertEqual(self.functions(text)["f"].lines, 4)

    def test_long_file(self):
        self.assertEqual(len(list(sizes.problems("src/a.cpp", "\n" * 401))), 1)


if __name__ == "__main__":
    unittest.main()
