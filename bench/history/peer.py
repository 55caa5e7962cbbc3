"""Reads a history with Python's csv module and prints the rows and the seconds of processor time.

    peer.py rows FILE      opens the file and splits it into rows of text
    peer.py numbers FILE   the same, and reads every value as a number
"""

import csv
import sys
import time


def main():
    task, path = sys.argv[1:]
    start = time.process_time()
    with open(path, newline="", encoding="utf-8") as file:
        rows = list(csv.reader(file))
    if task == "numbers":
        values = [[float(field) for field in row] for row in rows[1:]]
        assert len(values) == len(rows) - 1
    seconds = time.process_time() - start
    print(len(rows) - 1, seconds)


main()
