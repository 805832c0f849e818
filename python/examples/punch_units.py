#!/usr/bin/env python3
"""Prints which queues of the CUPS server have a printer with a punch unit, and which unit it is.

usage: punch_units.py DRIVER_FOLDER DOCUMENT_DIRECTORY

"{queue}" in the document directory is replaced by the name of each queue. Needs python3-cups."""

import sys

import cups

from info_analyze import Analyzer, Error


def main(driver_folder: str, document_directory: str) -> None:
    for queue in sorted(cups.Connection().getPrinters()):
        documents = document_directory.replace("{queue}", queue)
        try:
            with Analyzer(driver_folder, queue, documents) as analyzer:
                options = analyzer.query()
        except Error as error:
            print(f"{queue}: not known: {error.object}: {error.cause}", file=sys.stderr)
            continue
        unit = options.get("QVPuncher", "None")
        if unit != "None":
            reports = {source.value for source in options.reason("QVPuncher").inputs
                       if source.key == "name"}
            print(f"{queue}: {unit}, by {', '.join(sorted(map(str, reports)))}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
