#!/usr/bin/python3
"""Reads the editor as a screen reader does: finds the controls of node 7 that bear no text by role and name, reads a
row, presses Add through the accessibility interface and sees the new row. Arguments: the dir-host program and the data
folder."""

import subprocess
import sys
import time

import pyatspi

CONTROLS = {
    "push button": ["Previous node", "First node", "Next node", "Last node", "Open a CSV file", "Add"],
    "text": ["Label", "Access code", "CSV filename"],
    "table": ["Directory"],
}
# A combo box is read as what it shows, behind its label.
COMBO_BOXES = [("DIR 7", "1 of 4"), ("5", "Starting Prompt:")]

failures = []


def check(condition, what):
    print("ok  " if condition else "FAIL", what)
    if not condition:
        failures.append(what)


def wait_for(find, seconds=20):
    end = time.time() + seconds
    while not (found := find()) and time.time() < end:
        time.sleep(0.1)
    return found


def descendants(node):
    for child in filter(None, node):
        yield child
        # A table's cells are read by row and column.
        if child.getRoleName() != "table":
            yield from descendants(child)


def find_window():
    windows = (window for application in pyatspi.Registry.getDesktop(0) for window in application or [])
    return next((window for window in windows if window and window.name == "DIR Editor"), None)


def labels_of(node):
    relations = [r for r in node.getRelationSet() if r.getRelationType() == pyatspi.RELATION_LABELLED_BY]
    return [relation.getTarget(0).name for relation in relations]


def row_texts(table, row):
    return [table.getAccessibleAt(row, column).name for column in range(table.nColumns)]


def read(window):
    showing = [node for node in descendants(window) if node.getState().contains(pyatspi.STATE_SHOWING)]
    shown = {(node.getRoleName(), node.name.replace("&", "")): node for node in showing}
    for role, names in CONTROLS.items():
        for name in names:
            check((role, name) in shown, f"{role} \"{name}\"")
    for value, label in COMBO_BOXES:
        combo = shown.get(("combo box", value))
        check(combo and label in labels_of(combo), f"combo box \"{value}\", labelled \"{label}\"")

    table = shown["table", "Directory"].queryTable()
    first = row_texts(table, 0)
    check({"Smith", "Anne", "101"} <= set(first), f"the first row reads {first}")
    check(not first[0] and not first[5], "the columns that are not shown are not read")
    before = table.nRows
    shown["push button", "Add"].queryAction().doAction(0)
    check(wait_for(lambda: table.nRows == before + 1, 5), "Add makes a new row")
    last = row_texts(table, before)
    check("1" in last, f"the new row reads {last}")
    why = table.getAccessibleAt(before, 1).description
    check(why == "Incomplete: No Data in LastName, No Data in FirstName", f"the new row is red because {why}")


editor = subprocess.Popen([sys.argv[1], "--data", sys.argv[2], "--node", "7"])
try:
    main_window = wait_for(find_window)
    check(main_window, "the window \"DIR Editor\" is on the accessibility bus")
    if main_window:
        read(main_window)
finally:
    editor.kill()
    editor.wait()
print(f"{len(failures)} failed")
sys.exit(1 if failures else 0)
