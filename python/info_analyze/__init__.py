"""The PPD options of a printer, from its PPD and the documents that the device reports.

This package calls ``libinfo_analyze.so.1``. ::

    from info_analyze import Analyzer

    with Analyzer("/usr/lib/driver", "office", "/var/cache/driver/office") as analyzer:
        options = analyzer.query()
    print(options["QVFinisher"], options.reason("QVFinisher").inputs)

An :class:`Analyzer` belongs to the thread that made it. Everything that it returns is a copy, which
stays valid after the analyser is closed and may be used in every thread. The interpreter lock is
released while the library works.
"""

from ._version import __version__
from .analyzer import Analyzer
from .calibration import (
    CURVE_TABLE_NAMES,
    Calib4Settings,
    CalibrationDefaults,
    CalibrationSettings,
    CurveTable,
    curve_table,
)
from .device_uri import DeviceUri
from .errors import (
    ClosedError,
    CommunicationLibraryError,
    DeviceUriError,
    DocumentsError,
    DriverFolderError,
    Error,
    QueueError,
    SnapshotError,
    ThreadError,
    UseError,
)
from .models import (
    MEDIA_TYPES, Input, ModelRow, ModelTable, document_names, model_tables, rows_of_model)
from .options import Options, RawValue, Reason, Value
from .queues import (
    Device, Queue, cups_queues, daemon_device, daemon_queue_of, daemon_queues, driver_folders)
from .snapshot import Snapshot

__all__ = [
    "CURVE_TABLE_NAMES",
    "MEDIA_TYPES",
    "Analyzer",
    "Calib4Settings",
    "CalibrationDefaults",
    "CalibrationSettings",
    "ClosedError",
    "CommunicationLibraryError",
    "CurveTable",
    "Device",
    "DeviceUri",
    "DeviceUriError",
    "DocumentsError",
    "DriverFolderError",
    "Error",
    "Input",
    "ModelRow",
    "ModelTable",
    "Options",
    "Queue",
    "QueueError",
    "RawValue",
    "Reason",
    "Snapshot",
    "SnapshotError",
    "ThreadError",
    "UseError",
    "Value",
    "__version__",
    "cups_queues",
    "curve_table",
    "daemon_device",
    "daemon_queue_of",
    "daemon_queues",
    "document_names",
    "driver_folders",
    "model_tables",
    "rows_of_model",
]
