"""What comes with the tool says what the tool says: catalogues, manual page, completion."""

import re
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

from harness import QELCTL, SOURCE, ToolTest, reader

TOOL = SOURCE / "tools" / "qelctl"


class Catalogues(unittest.TestCase):
    def catalogue(self, path):
        texts = {}
        for message in ElementTree.parse(path).iter("message"):
            self.assertNotIn(message.get("id"), texts)
            translation = message.find("translation")
            self.assertIsNone(translation.get("type"), message.get("id"))
            self.assertTrue(translation.text, message.get("id"))
            texts[message.get("id")] = translation.text
        return texts

    def test_every_text_is_there_and_used_in_both_languages(self):
        for folder, stem, prefix in [
            (TOOL, TOOL / "qelctl", "qelctl"),
            (SOURCE / "frontend", SOURCE / "frontend" / "translations" / "frontend",
             "qelfrontend"),
            (SOURCE / "drivers" / "simulator", SOURCE / "drivers" / "simulator" / "plugin",
             "qelsimulator"),
        ]:
            with self.subTest(prefix):
                english, german = (self.catalogue(f"{stem}_{language}.ts")
                                   for language in ("en", "de"))
                code = "".join(path.read_text(encoding="utf-8") for path in folder.glob("*.cpp"))
                used = set(re.findall(rf'"({prefix}-[a-z0-9-]+)"', code))
                # The documents of the tool bear its name, too.
                used -= set(re.findall(r'document\(QStringLiteral\("([^"]+)"', code))
                if prefix == "qelfrontend":  # has a sentence for each problem of a value
                    problems = (SOURCE / "values" / "problem.cpp").read_text(encoding="utf-8")
                    used |= {f"{prefix}-{name}" for name in
                             re.findall(r'\{Problem::\w+, "([a-z-]+)"', problems)}
                self.assertEqual(used, set(english))
                self.assertEqual(used, set(german))
                for name in used:
                    self.assertEqual(*(sorted(set(re.findall(r"%\d", text[name])))
                                       for text in (english, german)), name)

    LITERALS = r'(?:"(?:[^"\\\n]|\\.)*"\s*)+'

    def joined(self, literals):
        text = "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', literals))
        return text.replace('\\"', '"').replace("\\n", "\n")

    def findings(self):
        names = {"32-bit x86", "32-bit ARM", "64-bit ARM", "64-bit PowerPC", "IBM S/390"}
        for path in (SOURCE / "inspection").glob("*.cpp"):
            code = re.sub(r"^ *//.*|#include.*", "", path.read_text(encoding="utf-8"), flags=re.M)
            texts = map(self.joined, re.findall(self.LITERALS, code))
            yield from (text for text in texts if re.search(r"\w \w|%1 needs", text)
                        and text not in names)

    def check_texts(self):
        for name in ("report", "soak", "unplugging", "rules_byhand"):
            code = (SOURCE / "conformance" / f"{name}.cpp").read_text(encoding="utf-8")
            yield from map(self.joined, re.findall(
                rf'(?:\b(?:in|translated|ask)\(|return )\s*({self.LITERALS})[,;)]', code))

    def rules(self):
        page = (SOURCE / "docs" / "conformance-rules.md").read_text(encoding="utf-8")
        yield from re.findall(r"^## (.*)", page, re.M)
        yield from re.findall(r"^- (?:Why|Remedy): (.*)", page, re.M)
        yield from re.findall(r"^\*\*\d+\.\*\* (.*?)(?: \*\(\w+\)\*)*$", page, re.M)

    def test_whatever_is_reported_on_a_driver_has_a_german_text(self):
        for catalogue, kinds in (("inspection/findings_de.ts", ((self.findings, 60),)),
                                 ("conformance/rules_de.ts", ((self.check_texts, 20), (self.rules, 250)))):
            english = set()
            for kind, few in kinds:
                texts = set(kind()) - {""}
                self.assertGreater(len(texts), few)
                english |= texts
            german = self.catalogue(SOURCE / catalogue)
            self.assertEqual(english, set(german))
            for text, translation in german.items():
                self.assertEqual(*(sorted(set(re.findall(r"%\d", t))) for t in (text, translation)))


class Manual(ToolTest):
    def test_it_is_well_formed(self):
        lint = subprocess.run(["mandoc", "-Tlint", "-W", "warning", TOOL / "qelctl.1"],
                              capture_output=True, text=True, check=False)
        self.assertEqual((lint.returncode, lint.stdout), (0, ""))

    def test_it_names_what_the_help_names(self):
        page = (TOOL / "qelctl.1").read_text(encoding="utf-8")
        commands = re.findall(r"^  ([a-z-]+)  ", self.run_tool("--help")[0], re.M)
        sections = dict(re.findall(r"^\.Ss (\S+)\n(.*?)(?=^\.S[sh])", page, re.M | re.S))
        self.assertEqual(set(commands), set(sections))
        for command in commands:
            options = re.findall(r"^  --([a-z-]+)", self.run_tool(command, "--help")[0], re.M)
            documented = re.findall(r"^\.It Fl -([a-z-]+)", sections[command], re.M)
            self.assertEqual(options, documented, command)


class Completion(ToolTest):
    LINES = [
        (["li"], {"list"}),
        (["--log", ""], {"quiet", "warning", "info", "debug"}),
        (["show", "--j"], {"--json"}),
        (["list", "--driver", ""], {"simulator"}),
        (["run", "A"], {"A-1", "A-2"}),
        (["run", "A-1", "abs"], {"absorbance-measurement"}),
        (["run", "A-1", "absorbance", "--f"], {"--format", "--force"}),
        (["run", "--timeout", "5", "A-1", "absorbance", "--format", "p"], {"plate"}),
        (["run", "A-1", "absorbance", "--set", ""], {"rapidMode=", "wavelengths="}),
        (["--color", "never", "run", "--set", "a=1", "L"], {"L-3"}),
        (["show", "A-1", ""], set()),
    ]

    def setUp(self):
        super().setUp()
        self.furnish(reader("A-1"), reader("A-2"), reader("L-3", "luminescence-96"))
        tool = self.folder / "qelctl"
        tool.symlink_to(QELCTL)
        self.environment["PATH"] = f"{self.folder}:{self.environment['PATH']}"

    def complete(self, shell, script, words):
        result = subprocess.run([*shell, script, "-", *words], capture_output=True, text=True,
                                env=self.environment, check=True)
        self.assertEqual(result.stderr, "")
        return result.stdout.split()

    def test_bash(self):
        script = f"""
            source '{TOOL}/completion/qelctl.bash'
            compopt() {{ :; }}
            COMP_WORDS=(qelctl)
            for word in "$@"; do  # split as bash does it
                if [[ $word == *=* ]]; then COMP_WORDS+=("${{word%%=*}}" = "${{word#*=}}")
                else COMP_WORDS+=("$word"); fi
            done
            COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))
            _qelctl
            printf '%s\\n' "${{COMPREPLY[@]}}" """
        for words, expected in self.LINES:
            with self.subTest(words):
                self.assertEqual(set(self.complete(["bash", "-c"], script, words)), expected)

    def test_zsh(self):
        # What zsh itself would do with the candidates: leave those that begin like the word.
        script = f"""
            words=(qelctl "$@") CURRENT=$(( $# + 1 ))
            _files() {{ : }}
            _describe() {{
                local name=$argv[-1]
                [[ $argv[-2] == -S ]] && name=$argv[-3]
                local candidate
                for candidate in ${{(P)name}}; do
                    [[ ${{candidate%%:*}} == $words[CURRENT]* ]] && print -r -- ${{candidate%%:*}}
                done
                return 0
            }}
            source '{TOOL}/completion/_qelctl' "$@" || true"""
        for words, expected in self.LINES:
            with self.subTest(words):
                self.assertEqual(set(self.complete(["zsh", "-f", "-c"], script, words)), expected)


if __name__ == "__main__":
    unittest.main()
