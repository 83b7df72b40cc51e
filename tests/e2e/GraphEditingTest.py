"""A worm with two heads from nothing: its regions and organs from the menus of the graph, their places by dragging."""
import os
from math import hypot

shots = os.environ.get("VERMIDEX_SHOTS")    # a folder for a picture of each step

REGION_LEVER, ORGAN, END = 85, 35, 18.5     # how far these stand from their node, beyond what the worm has
NEW = (20, 0)                               # where an organ comes to lie
EYE, BRAIN = ((21, 21), (-15, 0)), ((26, 15), (-14, -4))


def shot(name):
    if shots:
        ui.wait_still()
        ui.shot(f"{shots}/{name}.png", "New morphology")


def out(vector, dist):
    """Vector, longer by dist."""
    return tuple(c * (1 + dist / hypot(*vector)) for c in vector)


def plus(*vectors):
    return tuple(map(sum, zip(*vectors)))


def node(region):
    """The place of a region, counted from the top; the worm is straight, and its red levers reach as far as at first."""
    ui.wait_still()
    levers = graph.find_colour((255, 0, 0))
    return levers.centre[0], levers.y + REGION_LEVER + 4 + 200 * region


def at(place, vector):
    """The point on the screen at a vector, y upwards, from a node."""
    return round(place[0] + vector[0]), round(place[1] - vector[1])


def drag(region, start, end):
    """Drags from one vector to another, both from the node of a region."""
    place = node(region)
    ui.drag(at(place, start), at(place, end))


def add_organ(region, kind):
    ui.click(node(region))
    ui.context_menu(node(region), "Add organ", kind)


def add_spot(region, kind, pos, towards):
    add_organ(region, kind)
    shown = out(pos, ORGAN)
    drag(region, out(NEW, ORGAN), shown)
    if towards[0] < 0 or towards[1]:
        drag(region, plus(shown, (15, 0)), plus(shown, towards))


def add_cord(region, x, ends):
    """The ends first: they keep their place when the cord moves."""
    add_organ(region, "VNC")
    moved = (x - NEW[0], 0)
    for end in ends:
        up = 20 if end[1] > 0 else -20
        start = plus(out(NEW, ORGAN), out((0, up), END))
        drag(region, start, plus(out(NEW, ORGAN), out(plus(end, moved), END)))
    drag(region, out(NEW, ORGAN), out((x, 0), ORGAN))


def flip(vector, x, y):
    return vector[0] * x, vector[1] * y


ui.window("New morphology")
ui.resize(1000, 820)
ui.wait_still()
graph = ui.view(ui.find("filler", re.compile("^Graph of morphology")))
drawing = ui.view(ui.find("filler", re.compile("^Drawing of morphology")))
shot("1-empty")

ui.context_menu(graph.centre(), "Create region", "Head")
for above, kind in enumerate(("Trunk", "Head")):
    ui.click(node(above))
    ui.context_menu(node(above), "Add region", kind)
shot("2-regions")
ui.click(graph.centre(-200, 300))  # nothing is there
for region, y in ((0, 1), (2, -1)):
    for kind, (pos, towards) in (("Brain", BRAIN), ("Eye", EYE)):
        for x in (1, -1):
            add_spot(region, kind, flip(pos, x, y), flip(towards, x, y))
    shot(f"3-head-{region}")
add_spot(1, "Phar.", (0.01, -0.01), (0, 15))
for x in (1, -1):
    add_cord(1, 43 * x, ((-8 * x, 176.5), (-8 * x, -176.5)))
shot("4-trunk")
for region, up in ((2, -1), (0, 1)):
    drag(region, (0, REGION_LEVER * up), (0, (REGION_LEVER + 20) * up))
shot("5-tips")

ui.press("OK")
ui.message("Name is empty").press("OK")
ui.type("Two heads")
ui.click(graph.centre(0, -200))
shot("6-named")

ui.wait_still()
picture = ui.grab(drawing.element)
x, y = drawing.centre()
for dy in (-190, 190):
    red = picture.pixel(x, y + dy)
    assert red[0] > 200 and max(red[1:]) < 230, (dy, red)
trunk = picture.pixel(x, y)
assert 120 < min(trunk) and max(trunk) < 220 and max(trunk) - min(trunk) < 10, trunk
cords = drawing.find_colour((0, 255, 0))
assert cords and cords.h > 300 and cords.w > 70, cords

ui.press("OK")
assert ui.wait_exit() == 0, ui.status_text()
assert re.fullmatch(r"\d+ Two heads 3 4 Brain 4 Eye 1 Phar\. 2 VNC\n", ui.stdout()), ui.stdout()
