"""The stories of a PluginCore at fault are found by themselves. Without a build."""

import json
import pathlib
import tempfile
import unittest

import stories


class StoriesTest(unittest.TestCase):
    def test_those_of_the_tree(self):
        names = {pathlib.Path(story).stem for story in stories.PLUGINCORE_STORIES}
        self.assertLessEqual({"throws", "tick-throws", "file-check-throws", "menu-creation-throws", "panel-port-throws",
                              "panel-registering-throws", "entry-missing", "incompatible-four-entries"}, names)
        # There the messaging library throws, and nothing does.
        self.assertFalse({"panel-dispatch-throws", "panel-listening-throws", "working-day"} & names)

    def found(self, added: dict[str, dict], lacks: str = "") -> list[str]:
        with tempfile.TemporaryDirectory() as name:
            root = pathlib.Path(name)
            (root / stories.FOLDER).mkdir(parents=True)
            added |= {story: {} for story in stories.NAMED if "*" not in story and story != lacks}
            for story, text in added.items():
                (root / stories.FOLDER / f"{story}.json").write_text(json.dumps(text), encoding="utf-8")
            return [pathlib.Path(story).stem for story in stories.stories_of_a_faulty_plugincore(root)]

    def test_a_new_one_counts_by_itself(self):
        throw = {"answers": {"GetMenus": [{}, {"throw": "cpp"}]}}
        found = self.found({"new-one": throw, "in-a-case": {"cases": {"a": {"steps": [throw]}}}, "extreme-results": {},
                            "of-the-bus": {"bus_answers": {"PlugPlugDispatchEvent": [{"throw": "cpp"}]}}})
        self.assertLess({"new-one", "in-a-case", "extreme-results", "settings-broken"}, set(found))
        self.assertNotIn("of-the-bus", found)

    def test_a_named_one_that_is_gone_is_missed(self):
        with self.assertRaisesRegex(RuntimeError, "no story 'settings-broken'"):
            self.found({}, lacks="settings-broken")


if __name__ == "__main__":
    unittest.main()
