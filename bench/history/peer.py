"""Reads a history with Python's csv module and prints the seconds of processor time that it took.

    peer.py rows FILE      splits the file into rows of text
    peer.py numbers FILE   the same, and reads every value as a number
"""

import csv
import sys
import time


def main():
    task, path = sys.argv[1:]
    with open(path, newline="", encoding="utf-8") as file:
        lines = file.read().splitlines(keepends=True)
    start = time.process_time()
    rows = list(csv.reader(lines))
    if task == "numbers":
        values = [[float(field) for field in row] for row in rows[1:]]
        count = len(values)
    else:
        count = len(rows) - 1
    seconds = time.process_time() - start
    print(count, seconds)


main()
