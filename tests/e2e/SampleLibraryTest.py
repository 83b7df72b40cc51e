"""The sample library from the command line: its elements, every entry of the menus, the About box."""

MENUS = {
    "File": ["New database...", "Open database...", "Save database as...", "Close database", "Vacuum database",
             "Import...", "Exit"],
    "Edit": ["Delete all experiments", "Delete all experiments and manipulations", "Delete all"],
    "Tools": ["Morphology graphical search", "Morphology list viewer", "Morphology distance calculator",
              "Morphology distance comparator"],
    "Help": ["View help", "About"],
}


def entries(menu):
    [popup] = ui.menu_item(menu).children
    return [entry for entry in popup.children if entry.role != "separator"]


ui.window("sample.edb - Vermidex")
status = ui.find("label", re.compile("^[0-9]+ experiments in the database$")).name
assert int(status.split()[0]) >= 12, status
for tab, least in (("Manipulations", 8), ("Morphologies", 14)):
    ui.tab(tab)
    status = ui.find("label", re.compile(f"^[0-9]+ {tab.lower()} in the database$")).name
    assert int(status.split()[0]) >= least, status

for menu, names in MENUS.items():
    found = entries(menu)
    assert [entry.name for entry in found] == names, (menu, [entry.name for entry in found])
    assert all(entry.enabled for entry in found), menu

ui.menu("Help", "About")
about = ui.message("About Vermidex")
for part in ("Vermidex", "Version 2.2.18", "design, storage, and search of planarian regenerative experiments", "Silk"):
    assert part in about.text, (part, about.text)
about.press("OK")

ui.menu("Tools", "Morphology list viewer")
ui.window("Morphology list viewer")
ui.key("Escape")
ui.wait_gone("Morphology list viewer")

ui.close()
assert ui.status == 0, ui.status_text()
assert not ui.stderr(), ui.stderr()
