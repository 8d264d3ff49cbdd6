"""What other programs report about an MXF file: witnesses of the checks beside this file."""

import json
import re
import shutil
import subprocess

READERS = [reader for reader in ("ffmpeg", "ffprobe", "mediainfo") if shutil.which(reader)]
SIZES = re.compile("size|bit_?rate|position|^filename$|^File_Modified", re.I)


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, errors="backslashreplace")


class Said:
    """What other programs report about a file; asked once."""

    def __init__(self, path):
        self.streams = streams_of(path) if "ffmpeg" in READERS else []
        self.ffprobe = ffprobe(path) if "ffprobe" in READERS else {}
        self.mediainfo = mediainfo(path) if "mediainfo" in READERS else {}


def streams_of(path):
    """The MD5 of every stream as it is in the file."""
    result = run("ffmpeg", "-v", "error", "-i", path, "-map", "0", "-c", "copy", "-f", "streamhash", "-hash", "md5", "-")
    return result.stdout.splitlines()


def flat(value, name=""):
    """The leaves of what JSON holds, by their paths."""
    if not isinstance(value, (dict, list)):
        return {name: value}
    leaves = {}
    for key, child in value.items() if isinstance(value, dict) else enumerate(value):
        leaves.update(flat(child, f"{name}/{key}"))
    return leaves


def without_sizes(leaves):
    return {name: str(value) for name, value in leaves.items() if not SIZES.search(name.rpartition("/")[2])}


def ffprobe(path):
    result = run("ffprobe", "-v", "warning", "-show_format", "-show_streams", "-of", "json", path)
    complaints = re.sub(r"@ 0x[0-9a-f]+", "", result.stderr.replace(path, ""))
    return without_sizes({**flat(json.loads(result.stdout)), "/complaints": complaints})


def mediainfo(path):
    """The leaves by the types and identifiers of their tracks, which keep these when others come."""
    tracks, leaves = json.loads(run("mediainfo", "--Output=JSON", path).stdout)["media"]["track"], {}
    for track in tracks:
        name = f"/{track['@type']} {track.get('ID', '')}".rstrip()
        while any(leaf.startswith(f"{name}/") for leaf in leaves):
            name += "'"
        leaves.update(flat(track, name))
    return {name: value for name, value in without_sizes(leaves).items() if not name.endswith("/@typeorder")}
