# fish completion for voxa

set -l commands info privacy diff report plot heatmap guess frames images streams records load stats slots sample
set -l types ints doubles int64s strings keystrokes points rects cursor-images
set -l rates 24 25 30 50 60 24000/1001 30000/1001 60000/1001

complete -c voxa -n "not __fish_seen_subcommand_from $commands help" -f
complete -c voxa -n __fish_use_subcommand -l help -d 'Show the help'
complete -c voxa -n __fish_use_subcommand -l version -d 'Show the version'
complete -c voxa -n __fish_use_subcommand -a info -d 'Show what recordings hold'
complete -c voxa -n __fish_use_subcommand -a privacy -d 'Show which streams hold typed text, and what looks like a secret'
complete -c voxa -n __fish_use_subcommand -a diff -d 'Compare the records of two recordings'
complete -c voxa -n __fish_use_subcommand -a report -d 'Write a recording as one page for a browser'
complete -c voxa -n __fish_use_subcommand -a streams -d 'List the metadata streams of a recording'
complete -c voxa -n __fish_use_subcommand -a records -d 'Print the records of a stream'
complete -c voxa -n __fish_use_subcommand -a load -d "Load a stream as keyframes on the frames of a project"
complete -c voxa -n __fish_use_subcommand -a stats -d 'Show the tracks of a recording as its host sees them'
complete -c voxa -n __fish_use_subcommand -a slots -d "Show the host's slot for each stream"
complete -c voxa -n __fish_use_subcommand -a plot -d 'Draw streams over time and on the screen'
complete -c voxa -n __fish_use_subcommand -a heatmap -d 'Draw how long the cursor was in each part of the screen'
complete -c voxa -n __fish_use_subcommand -a guess -d 'Guess the record type of each stream, with reasons'
complete -c voxa -n __fish_use_subcommand -a frames -d 'Print the value of each stream at each video frame'
complete -c voxa -n __fish_use_subcommand -a images -d 'Write the cursor images of a stream to files'
complete -c voxa -n __fish_use_subcommand -a sample -d 'Write a synthetic recording'
complete -c voxa -n __fish_use_subcommand -a help -d 'Show the help of a command'
complete -c voxa -n '__fish_seen_subcommand_from help' -f -a "$commands"

complete -c voxa -n "__fish_seen_subcommand_from $commands" -l help -d 'Show the options of the command'
complete -c voxa -n '__fish_seen_subcommand_from info privacy diff streams stats slots guess' -l format -x -a 'table json' -d 'Output format'
complete -c voxa -n '__fish_seen_subcommand_from records' -l format -x -a 'table csv json' -d 'Output format'
complete -c voxa -n '__fish_seen_subcommand_from load' -l format -x -a 'table csv json host-xml host-json' -d 'Output format'
complete -c voxa -n '__fish_seen_subcommand_from info report streams records guess privacy frames images plot heatmap' -l container -x -a 'Riff Atoms Raw' -d 'Read the file as this container'
complete -c voxa -n '__fish_seen_subcommand_from info privacy diff report records frames plot heatmap' -l as -x -a "$types" -d 'Record type'
complete -c voxa -n '__fish_seen_subcommand_from load' -l as -x -a "$types rect-collections opacity" -d 'Type of the values'
complete -c voxa -n '__fish_seen_subcommand_from report records load frames plot heatmap' -l rate -x -a "$rates" -d 'Frames per second'
complete -c voxa -n '__fish_seen_subcommand_from info guess privacy' -l streams -x -a all -d 'Streams of several files'
complete -c voxa -n '__fish_seen_subcommand_from frames' -l format -x -a 'csv json' -d 'Output format'
complete -c voxa -n '__fish_seen_subcommand_from report records load frames plot heatmap' -l from -x -d 'Leave out times before'
complete -c voxa -n '__fish_seen_subcommand_from report records load frames plot heatmap' -l to -x -d 'Leave out times from'
complete -c voxa -n '__fish_seen_subcommand_from report records load frames plot heatmap' -s o -l out -r -F -d 'Write to this file'
complete -c voxa -n '__fish_seen_subcommand_from images' -s o -l out -x -a '(__fish_complete_directories)' -d 'Folder'
complete -c voxa -n '__fish_seen_subcommand_from records load frames images report plot heatmap sample' -l force -d 'Replace existing files'
complete -c voxa -n '__fish_seen_subcommand_from records load frames plot report diff' -l redact -f -a 'letters digits all' -d 'Mask typed text'
complete -c voxa -n '__fish_seen_subcommand_from diff' -l align -d 'Compare at the best time offset'
complete -c voxa -n '__fish_seen_subcommand_from diff' -l tolerance -x -d 'Seconds by which times may differ'
complete -c voxa -n '__fish_seen_subcommand_from load' -l at -x -d 'Frame, or seconds with an s'
complete -c voxa -n '__fish_seen_subcommand_from plot heatmap' -l screen -x -d 'Size of the screen, WxH'
complete -c voxa -n '__fish_seen_subcommand_from heatmap' -l cell -x -d 'Side of a cell in pixels'
complete -c voxa -n '__fish_seen_subcommand_from sample' -l seconds -x -d 'Length'
complete -c voxa -n '__fish_seen_subcommand_from sample' -l onto -r -F -d 'Media file to copy and append to'
complete -c voxa -n '__fish_seen_subcommand_from sample' -l type -x -a "$types" -d 'Only the stream of this type'
complete -c voxa -n '__fish_seen_subcommand_from sample' -l seed -x -d 'Same seed, same bytes'
