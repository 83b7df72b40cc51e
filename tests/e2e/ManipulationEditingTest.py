"""A cut and a graft from nothing: the tree from its menus, the area by its corners, the graft by dragging and turning."""
import os
from math import pi

shots = os.environ.get("VERMIDEX_SHOTS")    # a folder for a picture of each step

NODE = 22.5             # half the extent of a node of the tree
WORM = 280              # how far the wild type reaches up and down from its middle
YELLOW, RED, GREEN = (255, 255, 0), (255, 0, 0), (0, 255, 0)


def shot(name):
    if shots:
        ui.wait_still()
        ui.shot(f"{shots}/{name}.png", "New worm manipulation")


def node(place, *others):
    """A node on the screen. The tree, of which others are what reaches farthest, stands in the middle of its view."""
    xs, ys = zip(place, *others)
    x = place[0] - (min(xs) + max(xs)) / 2
    y = place[1] - (min(ys) + max(ys)) / 2
    return tree.centre(round(x), round(-y))


def panel(title, content):
    """What stands below a title: a view that shows the worm in its middle, one pixel a unit."""
    ui.find("label", title)
    return ui.view(ui.find("filler", re.compile("^" + content)))


def at(view, x, y):
    return view.centre(round(x), round(-y))


def near(numbers, expected, tolerance):
    assert len(numbers) == len(expected), (numbers, expected)
    assert all(abs(a - b) <= tolerance for a, b in zip(numbers, expected)), (numbers, expected)


def output(key):
    """The numbers of the lines that the program has printed under a key."""
    return [[float(n) for n in line.split()[1:]] for line in ui.stdout().splitlines() if line.startswith(key)]


ui.window("New worm manipulation")
ui.resize(1200, 860)
ui.wait_still()
tree = ui.view(ui.find("filler", re.compile("^Tree of manipulation")))
ui.find("label", "Resultant piece:")
shot("1-new")

# -- the head off --
ui.click(node((0, 0)))
ui.find("label", "Morphology selector:")
shot("2-morphology")
ui.context_menu(node((0, 0)), "Add remove action")
cut = panel("Remove action:", "Area to cut away")
ui.wait_still()
handles = cut.find_colour(YELLOW)
near((handles.w, handles.h), (108, 108), 4)
shot("3-square")
CORNERS = (((50, 50), (80, 290)), ((-50, 50), (-80, 290)), ((-50, -50), (-80, 110)), ((50, -50), (80, 110)))
for corner, place in CORNERS:
    ui.drag(at(cut, *corner), at(cut, *place))
shot("4-cut")

ui.click(tree.centre(-100, 200))  # nothing is there
ui.wait_still()
product = panel("Resultant piece:", "Drawing of manipulation")
# What is left reaches from the tip of the tail to the cut.
shown = product.find_colour(GREEN)
assert shown.h < WORM + 110, shown
shot("5-headless")

# -- a graft --
ui.click(node((0, 0), (0, 75)))
ui.context_menu(node((0, 0), (0, 75)), "Add join action")
graft = panel("Join action:", "Graft on its body")
ui.wait_still()
shot("6-join")
ui.drag(at(graft, 0, 200), at(graft, 130, 200))
ui.drag(at(graft, 240, 0), at(graft, 130, 110))
shot("7-graft")

ui.click(tree.centre(-200, 300))
ui.find("label", "Resultant piece:")
shot("8-product")

ui.press("OK")
ui.message("Name is empty").press("OK")
ui.type("Graft in place of a head")
shot("9-named")
ui.press("OK")
assert ui.wait_exit() == 0, ui.status_text()
assert "name: Graft in place of a head\n" in ui.stdout(), ui.stdout()
corners = output("corner:")
assert len(corners) == 4, corners
for corner, (_, place) in zip(corners, CORNERS):
    near(corner, place, 1.5)
[(x, y, rot)] = output("graft:")
near((x, y), (130, 0), 1.5)
near((rot,), (pi / 2,), 0.03)
