#!/usr/bin/python3
"""Reads the editor as a screen reader does: finds the controls of node 7 by role and name, reads a row, presses Add
through the accessibility interface and sees the new row. Arguments: the dir-host program and the data folder."""

import subprocess
import sys
import time

import pyatspi

CONTROLS = [
    ("push button", "Previous node"),
    ("push button", "First node"),
    ("push button", "Next node"),
    ("push button", "Last node"),
    ("label", "1 of 4"),
    ("text", "Label"),
    ("text", "Access code"),
    ("text", "CSV filename"),
    ("push button", "Open a CSV file"),
    ("table", "Directory"),
    ("push button", "Add"),
    ("push button", "Insert"),
    ("push button", "Remove"),
    ("push button", "Edit"),
    ("push button", "Save List"),
    ("push button", "Up"),
    ("push button", "Down"),
    ("push button", "OK"),
    ("push button", "Cancel"),
    ("push button", "Apply"),
]
# A combo box is read as what it shows, behind its label.
COMBO_BOXES = [("DIR 7", "1 of 4"), ("5", "Starting Prompt:")]
HIDDEN = ["Use passwords", "Last name", "First name", "Extension", "Prompt number", "Password"]

failures = []


def check(condition, what):
    print("ok  " if condition else "FAIL", what)
    if not condition:
        failures.append(what)


def wait_for(find, seconds=20):
    end = time.time() + seconds
    while time.time() < end:
        found = find()
        if found:
            return found
        time.sleep(0.1)
    return None


def descendants(node):
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is None:
            continue
        yield child
        # A table's cells are read by row and column.
        if child.getRoleName() != "table":
            yield from descendants(child)


def is_showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


def find_window():
    desktop = pyatspi.Registry.getDesktop(0)
    for index in range(desktop.childCount):
        application = desktop.getChildAtIndex(index)
        for window in application or []:
            if window is not None and window.name == "DIR Editor":
                return window
    return None


def labels_of(node):
    return [
        relation.getTarget(index).name
        for relation in node.getRelationSet()
        if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY
        for index in range(relation.getNTargets())
    ]


def row_texts(table, row):
    cells = (table.getAccessibleAt(row, column) for column in range(table.nColumns))
    return [cell.name for cell in cells if cell is not None]


def main():
    editor = subprocess.Popen([sys.argv[1], "--data", sys.argv[2], "--node", "7"])
    try:
        window = wait_for(find_window)
        check(window is not None, "the window \"DIR Editor\" is on the accessibility bus")
        if window is None:
            return
        nodes = list(descendants(window))
        shown = [(node.getRoleName(), node.name.replace("&", ""), node) for node in nodes if is_showing(node)]
        for role, name in CONTROLS:
            check(any((role, name) == entry[:2] for entry in shown), f"{role} \"{name}\"")
        for value, label in COMBO_BOXES:
            combo = next((entry[2] for entry in shown if entry[:2] == ("combo box", value)), None)
            check(combo is not None and label in labels_of(combo), f"combo box \"{value}\", labelled \"{label}\"")
        for name in HIDDEN:
            check(not any(entry[1] == name and entry[0] != "label" for entry in shown), f"\"{name}\" is hidden")

        table_node = next(entry[2] for entry in shown if entry[0] == "table")
        table = table_node.queryTable()
        first = row_texts(table, 0)
        check("Smith" in first and "Anne" in first and "101" in first, f"the first row reads {first}")
        before = table.nRows
        add = next(entry[2] for entry in shown if entry[:2] == ("push button", "Add"))
        add.queryAction().doAction(0)
        check(wait_for(lambda: table_node.queryTable().nRows == before + 1, 5) is not None, "Add makes a new row")
        last = row_texts(table_node.queryTable(), before)
        check("1" in last, f"the new row reads {last}")
    finally:
        editor.kill()
        editor.wait()


main()
print(f"{len(failures)} failed")
sys.exit(1 if failures else 0)
