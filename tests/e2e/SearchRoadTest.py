"""From an empty library to an experiment, and to it again by five searches; then its copy goes, and it stays."""
import os
from pathlib import Path

shots = os.environ.get("VERMIDEX_SHOTS")    # a folder for a picture of each step

WORM, MANIPULATION, EXPERIMENT = "Two-headed worm", "Head off", "Decapitation 1"
NAME = 1        # the column behind the ids, which are hidden
PUBLICATION, SPECIES = "On the heads of worms", "Dugesia exempla"


def shot(name):
    if shots:
        ui.wait_still()
        ui.shot(f"{shots}/{name}.png")


def status(text):
    ui.find("label", text)


def view(name):
    return ui.find("filler", re.compile("^" + name))


def accept(title):
    ui.press("OK")
    ui.wait_gone(title)


def search(field, operator, value):
    for nth, entry in ((1, field), (2, operator)):
        ui.select(ui.find("combo box", nth=nth), entry)
    ui.set_text(ui.find("text", "Value"), value)
    ui.key("Return")


def found():
    return ui.table(ui.find("table", "Elements found"))


# -- an empty library --
status("No database opened")
ui.menu("File", "New database...")
ui.file_dialog(Path.cwd() / "road.edb", title="New database")
ui.window("road.edb - Vermidex")

# -- a worm --
ui.tab("Morphologies")
status("1 morphology in the database")
ui.press("New")
ui.window("New morphology")
ui.wait_still()
graph = ui.view(view("Graph of morphology"))
ui.context_menu(graph.centre(), "Create region", "Head")
ui.click(graph.centre())
ui.context_menu(graph.centre(), "Add region", "Head")
ui.set_text(ui.find("text", "Name:"), WORM)
shot("1-worm")
accept("New morphology")
status("2 morphologies in the database")

# -- a manipulation of the wild type --
ui.tab("Manipulations")
status("No manipulations in the database")
ui.press("New")
ui.window("New worm manipulation")
ui.wait_still()
tree = ui.view(view("Tree of manipulation"))
ui.click(tree.centre())
ui.context_menu(tree.centre(), "Add remove action")
ui.set_text(ui.find("text", "Name:"), MANIPULATION)
shot("2-manipulation")
accept("New worm manipulation")
status("1 manipulation in the database")

# -- an experiment, with what it still needs --
ui.tab("Experiments")
status("No experiments in the database")
ui.press("New")
FORM = "New experiment"
ui.window(FORM)
ui.set_text(ui.find("text", "Name:"), EXPERIMENT)
ui.select(ui.find("combo box", "Manipulation"), MANIPULATION)
for role, title, label, name in (("Publication", "New publication", "Title:", PUBLICATION),
                                 ("Species", "New species", "Name:", SPECIES)):
    ui.click(next(button for button in ui.find_all("push button", "New") if button.description == role))
    ui.window(title)
    ui.set_text(ui.find("text", label), name)
    if role == "Publication":
        ui.set_spin(ui.find("spin box", "Year:"), 1899)
    accept(title)
ui.press("Add morph.")
ui.select(ui.find("combo box", "Wild type"), WORM)
ui.set_spin(ui.find("spin box", "Frequency:"), 1)
shot("3-experiment")
accept(FORM)
status("1 experiment in the database")

# -- to it again --
ui.tab("Search")
for field, operator, value in (("Manipulation name", "equal to", "head off"),
                               ("Results morphology name", "containing", "headed"),
                               ("Publication year", "less than", "1900"),
                               ("Species name", "greater than", "Dugesia"),
                               ("Name", "containing", "decap")):
    search(field, operator, value)
    status("1 experiment found in the database")
    assert found().column(NAME) == [EXPERIMENT], found().rows()
shot("4-found")
ui.set_text(ui.find("text", "Value"), "no such thing")
ui.press("Search")
status("No experiments found in the database")
ui.set_text(ui.find("text", "Value"), "decap")
ui.press("Search")
status("1 experiment found in the database")

# -- a copy, and its end --
found().select(0, column=NAME)
ui.press("Copy")
ui.window(FORM)
accept(FORM)
status("2 experiments found in the database")
assert found().column(NAME) == [EXPERIMENT, f"{EXPERIMENT} - copy"], found().rows()
shot("5-copy")
found().select(1, column=NAME)
ui.press("Delete")
ui.message("Warning").press("Yes")
status("1 experiment found in the database")
assert found().column(NAME) == [EXPERIMENT], found().rows()

# -- on to its species, and into its form --
ui.context_menu(found().cell(0, NAME), "Search species")
status("1 species found in the database")
assert found().column(NAME) == [SPECIES], found().rows()
shot("6-species")
ui.context_menu(found().cell(0, NAME), "Search experiments")
status("1 experiment found in the database")
ui.double_click(found().cell(0, NAME))
ui.window("Edit experiment")
ui.press("Cancel")
ui.wait_gone("Edit experiment")

# -- the same library at the next start --
ui.menu("File", "Exit")
assert ui.wait_exit() == 0, ui.status_text()
ui.start()
ui.window("road.edb - Vermidex")
status("1 experiment in the database")
assert ui.table().column(NAME) == [EXPERIMENT], ui.table().rows()
ui.close()
assert ui.status == 0, ui.status_text()
assert not ui.stderr(), ui.stderr()
