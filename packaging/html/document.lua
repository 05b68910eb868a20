-- The first heading is the document's title.
function Pandoc(document)
  local first = document.blocks[1]
  document.meta.title = first.content
  document.blocks:remove(1)
  return document
end

-- The documents refer to each other as Markdown files.
function Link(link)
  link.target = link.target:gsub("%.md$", ".html"):gsub("%.md#", ".html#")
  return link
end
