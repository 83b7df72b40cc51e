"""A person's first steps: a new library, its worm, a copy of it, and the copy again after a restart."""
from pathlib import Path

folder = Path.cwd()


def see_worm():
    """Right of the graph and down the middle of the worm, between its two green cords, lie a red head, a gray trunk,
    a blue tail."""
    viewer = ui.grab("Morphology list viewer")
    graph, frame = viewer.find_colour((255, 0, 0)), viewer.rect     # the levers of the graph
    right = graph.x + graph.w
    frame.x, frame.w = right, frame.x + frame.w - right
    viewer = ui.grab(frame)
    cords = viewer.find_colour((0, 255, 0))
    assert cords and 450 < cords.h < 550 and cords.w < 120, cords
    x, y = cords.centre
    head, trunk, tail = (viewer.pixel(x, y + dy) for dy in (-130, 0, 130))
    assert head[0] > 200 and max(head[1:]) < 150, head
    assert 120 < min(trunk) and max(trunk) < 200 and max(trunk) - min(trunk) < 10, trunk
    assert tail[2] > 200 and max(tail[:2]) < 150, tail


ui.find("label", "No database opened")
assert not ui.menu_item("Tools", "Morphology list viewer").enabled

ui.menu("File", "New database...")
ui.file_dialog(folder / "first", title="New database")
ui.window("first.edb - Vermidex")
ui.find("label", "No experiments in the database")
ui.tab("Morphologies")
ui.find("label", "1 morphology in the database")

ui.menu("Tools", "Morphology list viewer")
ui.window("Morphology list viewer")
ui.wait_still()
see_worm()
ui.press("Close")
ui.wait_gone("Morphology list viewer")

ui.menu("File", "Save database as...")
ui.file_dialog(folder / "second.edb", title="Save database")
ui.window("second.edb - Vermidex")
ui.find("label", "1 morphology in the database")
assert (folder / "first.edb").read_bytes() == (folder / "second.edb").read_bytes()

ui.key("Ctrl+V")
ui.message("Vacuum database").press("OK")

ui.menu("File", "Exit")
assert ui.wait_exit() == 0, ui.status_text()
ui.start()
ui.window("second.edb - Vermidex")
ui.find("label", "No experiments in the database")

ui.key("Ctrl+C")
ui.find("label", "No database opened")
ui.close()
assert ui.status == 0, ui.status_text()
assert not ui.stderr(), ui.stderr()
