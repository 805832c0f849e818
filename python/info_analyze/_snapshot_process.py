"""The process in which a snapshot is queried. It writes the options, or an error, to its output.

usage: python3 -m info_analyze._snapshot_process DRIVER_FOLDER QUEUE DOCUMENTS
"""

from __future__ import annotations

import os
import pickle
import sys

from .analyzer import Analyzer
from .errors import Error
from .options import Options


def _query(driver_folder: str, queue: str, documents: str) -> Options | Error:
    try:
        with Analyzer(driver_folder, queue, documents) as analyzer:
            return analyzer.query()
    except Error as error:
        return error


if __name__ == "__main__":
    # What a communication library prints is not part of the answer.
    with open(os.dup(sys.stdout.fileno()), "wb") as answer:
        os.dup2(sys.stderr.fileno(), sys.stdout.fileno())
        pickle.dump(_query(*sys.argv[1:]), answer)
