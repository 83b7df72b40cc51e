"""The closest worms to one: between two worms, around one of the library, and around one that is drawn."""
import os
import re

shots = os.environ.get("VERMIDEX_SHOTS")    # a folder for a picture of each tool


def open_tool(name):
    ui.menu("Tools", name)
    ui.window(name)


def close_tool(name):
    ui.wait_still()
    if shots:
        ui.shot(f"{shots}/{name.split()[-1]}.png", name)
    ui.press("Close")
    ui.wait_gone(name)


def view(name):
    return ui.find("filler", re.compile(name))


def distance():
    label = ui.find("label", re.compile("^The distance between the morphologies is ")).name
    return float(re.fullmatch("The distance between the morphologies is ([0-9]+[.][0-9]{2}) units", label)[1])


def compared():
    """The names and distances that the comparator draws, from left to right."""
    told = view("^Morphologies by distance from ").description
    return [(name, float(number)) for name, number in re.findall("(.+?) ([0-9]+[.][0-9]{2})(?:, |$)", told)]


def check_order(found, first):
    assert found[0] == (first, 0), found[0]
    assert [number for _, number in found] == sorted(number for _, number in found), found
    assert len(found) == len(dict(found)) == worms, found


ui.window("sample.edb - Vermidex")
ui.tab("Morphologies")
worms = int(ui.find("label", re.compile("^[0-9]+ morphologies in the database$")).name.split()[0])

COMPARATOR = "Morphology distance comparator"
open_tool(COMPARATOR)
check_order(compared(), "Cyclops")
ui.select(ui.find("combo box"), "Two-headed")
ui.wait_until(lambda: compared()[0][0] == "Two-headed", 10, "another comparison")
around_two_headed = compared()
check_order(around_two_headed, "Two-headed")
close_tool(COMPARATOR)

CALCULATOR = "Morphology distance calculator"
open_tool(CALCULATOR)
assert distance() == 0
ui.select(ui.find("combo box", nth=0), "Two-headed")
for name, number in around_two_headed[1:4]:
    ui.select(ui.find("combo box", nth=1), name)
    ui.wait_until(lambda: distance() == number, 10, f"{number} for {name}")
close_tool(CALCULATOR)

SEARCH = "Morphology graphical search"
open_tool(SEARCH)
assert view("^No morphologies$")
ui.press("Search")
results = view(f"^Drawings of morphologies: {worms}$")
assert results.description.startswith("Wild type, "), results.description

# Without its head the worm is the fragment that was cut behind the head.
graph = ui.view(view("^Graph of morphology"))
ui.wait_still()
levers = graph.find_colour((255, 0, 0))
head = levers.centre[0], levers.y + 4 + 105
ui.click(head)
ui.context_menu(head, "Delete selection")
ui.press("Search")
ui.wait_until(lambda: results.description.startswith("Headless fragment, "), 10, "the headless fragment")
close_tool(SEARCH)

ui.close()
assert ui.status == 0, ui.status_text()
assert not ui.stderr(), ui.stderr()
